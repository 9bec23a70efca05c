// Whether the desktop has a tray, as the watcher's answers come in any order.
#include "platform/linux/tray/TrayHostWatcher.h"

#include "FakeWatcher.h"
#include "helpers/EventLoop.h"

#include <QDBusPendingCallWatcher>
#include <QSignalSpy>
#include <QTimer>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>

namespace sonvara::test {

namespace {

using namespace std::chrono_literals;

class TrayHostWatcherTest : public testing::Test {
protected:
    /// Whether all questions have been answered, and nothing is left of them.
    static bool isAnswered(const TrayHostWatcher& tray)
    {
        return eventually([&] {
            runEvents();
            return tray.findChildren<QDBusPendingCallWatcher*>().isEmpty();
        });
    }
    bool isAsked(int times)
    {
        return eventually([&] { return watcher.held.size() == times; });
    }

    FakeWatcher watcher;
};

TEST_F(TrayHostWatcherTest, IsAsPatientAsItIsDocumented)
{
    EXPECT_EQ(TrayHostWatcher::patience, 10s);
}

TEST_F(TrayHostWatcherTest, TellsOfAHostOnce)
{
    const TrayHostWatcher tray(1h);
    const QSignalSpy changes(&tray, &TrayHostWatcher::notifierHostChanged);
    EXPECT_EQ(tray.hasNotifierHost(), std::nullopt);
    EXPECT_TRUE(isAnswered(tray));
    EXPECT_EQ(tray.hasNotifierHost(), true);
    const int before = watcher.questions;
    watcher.setHost(true);
    EXPECT_TRUE(eventually([&] { return watcher.questions > before; }));
    EXPECT_TRUE(isAnswered(tray));
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(TrayHostWatcherTest, SaysOnlyOnceThatThereIsNone)
{
    watcher.hasHost = false;
    const TrayHostWatcher tray(5ms);
    const QSignalSpy missing(&tray, &TrayHostWatcher::hostMissing);
    EXPECT_TRUE(eventually([&] { return !missing.isEmpty(); }));
    QTimer later;
    later.start(100ms);
    const QSignalSpy passed(&later, &QTimer::timeout);
    EXPECT_TRUE(eventually([&] { return !passed.isEmpty(); }));
    EXPECT_EQ(missing.size(), 1);
}

TEST_F(TrayHostWatcherTest, TheLatestAnswerCountsWhicheverComesFirst)
{
    watcher.isSlow = true;
    const TrayHostWatcher tray(1h);
    ASSERT_TRUE(isAsked(1));
    watcher.setHost(false);
    ASSERT_TRUE(isAsked(2));
    watcher.answer(watcher.held[0], true);
    watcher.answer(watcher.held[1], false);
    EXPECT_TRUE(isAnswered(tray));
    EXPECT_EQ(tray.hasNotifierHost(), false);
}

TEST_F(TrayHostWatcherTest, AnAnswerThatIsOvertakenByARefusalCountsForNothing)
{
    watcher.isSlow = true;
    TrayHostWatcher tray(1h);
    ASSERT_TRUE(isAsked(1));
    tray.refuse();
    watcher.answer(watcher.held[0], true);
    EXPECT_TRUE(isAnswered(tray));
    EXPECT_EQ(tray.hasNotifierHost(), false);
}

TEST_F(TrayHostWatcherTest, AsksAgainWhenNoAnswerCame)
{
    watcher.isSlow = true;
    const TrayHostWatcher tray(1h);
    ASSERT_TRUE(isAsked(1));
    watcher.isSlow = false;
    watcher.bus.send(watcher.held[0].createErrorReply(QDBusError::NoReply, "too late"));
    EXPECT_TRUE(eventually([&] { return tray.hasNotifierHost() == true; }));
}

}  // namespace

}  // namespace sonvara::test
