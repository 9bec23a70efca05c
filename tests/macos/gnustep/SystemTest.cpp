// The login item, the log, and sleep.
#include "StandInTest.h"
#include "platform/macos/system/DispatchMainQueue.h"
#include "platform/macos/system/ServiceLoginItem.h"
#include "platform/macos/system/UnifiedLog.h"
#include "platform/macos/system/Wakefulness.h"

namespace sonvara::test {
namespace {

using standins::LoginState;

class ServiceLoginItemTest : public StandInTest {
protected:
    ServiceLoginItem item_;
};

TEST_F(ServiceLoginItemTest, KnowsEveryStatus)
{
    standins::setLoginItem(LoginState::notRegistered, {});
    EXPECT_EQ(item_.status(), LoginItemStatus::notRegistered);
    standins::setLoginItem(LoginState::enabled, {});
    EXPECT_EQ(item_.status(), LoginItemStatus::enabled);
    standins::setLoginItem(LoginState::requiresApproval, {});
    EXPECT_EQ(item_.status(), LoginItemStatus::requiresApproval);
    standins::setLoginItem(LoginState::notFound, {});
    EXPECT_EQ(item_.status(), LoginItemStatus::notFound);
}

TEST_F(ServiceLoginItemTest, RegistersAndUnregisters)
{
    standins::setLoginItem(LoginState::notRegistered, {});
    EXPECT_EQ(item_.registerItem(), std::nullopt);
    EXPECT_EQ(standins::loginItem(), LoginState::enabled);
    EXPECT_EQ(item_.unregisterItem(), std::nullopt);
    EXPECT_EQ(standins::loginItem(), LoginState::notRegistered);
}

TEST_F(ServiceLoginItemTest, DescribesAFailure)
{
    standins::setLoginItem(LoginState::notRegistered, "The signature is invalid");
    const auto error = item_.registerItem();
    ASSERT_TRUE(error);
    EXPECT_NE(error->find("The signature is invalid"), std::string::npos) << *error;
    EXPECT_EQ(standins::loginItem(), LoginState::notRegistered);
    EXPECT_TRUE(item_.unregisterItem());
}

class UnifiedLogTest : public StandInTest {
protected:
    UnifiedLogTest() { (void)standins::takeLog(); }
    UnifiedLog log_{"app.example"};
    Logger logger_{log_, "Speech"};
};

TEST_F(UnifiedLogTest, WritesUnderSubsystemCategoryAndLevel)
{
    logger_.debug({{"Announcing: "}, {"Up next"}});
    logger_.error({{"failed"}});
    const auto records = standins::takeLog();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].subsystem, "app.example");
    EXPECT_EQ(records[0].category, "Speech");
    EXPECT_FALSE(records[0].isError);
    EXPECT_EQ(records[0].kept, "Announcing: Up next");
    EXPECT_TRUE(records[1].isError);
}

TEST_F(UnifiedLogTest, HidesWhatIsNotMarkedPublic)
{
    logger_.error({Logger::hidden("Music"), {" AppleScript error: "}, Logger::hidden("{number = -1743}")});
    logger_.debug({{"Now playing "}, Logger::hidden("100% %s \"Song\""), {"."}});
    const auto records = standins::takeLog();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].kept, "<private> AppleScript error: <private>");
    EXPECT_EQ(records[0].full, "Music AppleScript error: {number = -1743}");
    EXPECT_EQ(records[1].kept, "Now playing <private>.");
    EXPECT_EQ(records[1].full, "Now playing 100% %s \"Song\".");
}

TEST_F(UnifiedLogTest, WritesNothingWhenTheLogIsSwitchedOff)
{
    standins::setLogEnabled(false);
    logger_.debug({{"unseen"}});
    standins::setLogEnabled(true);
    EXPECT_TRUE(standins::takeLog().empty());
}

using SleepTest = StandInTest;

TEST_F(SleepTest, AnActivityIsUnderWayWhileItIsNeeded)
{
    {
        Wakefulness wakefulness;
        EXPECT_FALSE(standins::isKeptAwake());
        wakefulness.hold(true);
        wakefulness.hold(true);
        EXPECT_TRUE(standins::isKeptAwake());
        wakefulness.hold(false);
        EXPECT_FALSE(standins::isKeptAwake());
        wakefulness.hold(true);
    }
    EXPECT_FALSE(standins::isKeptAwake());
}

TEST_F(SleepTest, ATimerTicksAtOnceWhenTheMacWakesUp)
{
    DispatchMainQueue queue;
    int ticks = 0;
    const auto timer = queue.scheduleTimer(std::chrono::hours(1), [&ticks] { ++ticks; });
    standins::wakeFromSleep();
    EXPECT_EQ(ticks, 1);
    timer->invalidate();
    standins::wakeFromSleep();
    EXPECT_EQ(ticks, 1);
}

}  // namespace
}  // namespace sonvara::test
