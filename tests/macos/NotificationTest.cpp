// Notifications that another process posts.
#include "Command.h"
#include "Probe.h"
#include "platform/macos/players/DistributedNotificationCenter.h"

#include <gtest/gtest.h>
#include <thread>

namespace sonvara::test {
namespace {

constexpr const char* name = "app.sonvara.test.playerInfo";

class DistributedNotificationCenterTest : public testing::Test {
protected:
    /// Posts from another process and waits until `received_` has grown.
    void post(const std::string& arguments)
    {
        const std::size_t before = received_.size();
        std::thread poster([&arguments] {
            const std::string command = std::string(POST_NOTIFICATION) + " " + name + " " + arguments;
            EXPECT_TRUE(runCommand(command));
        });
        EXPECT_TRUE(probe::runUntil([&] { return received_.size() > before; }));
        poster.join();
    }

    DistributedNotificationCenter center_;
    std::vector<Notification> received_;
    Subscription handle_ = center_.addObserver(
        name, [this](const Notification& notification) { received_.push_back(notification); });
};

TEST_F(DistributedNotificationCenterTest, DeliversValuesWithTheirTypes)
{
    post("'Name=Song || 2' 'Artist=Björk' Rating=1 Position=2.5");
    ASSERT_EQ(received_.size(), 1U);
    EXPECT_EQ(received_[0].name, name);
    const UserInfo expected{
        {"Name", "Song || 2"}, {"Artist", "Björk"}, {"Rating", std::int64_t{1}}, {"Position", 2.5}};
    EXPECT_EQ(received_[0].userInfo, expected);
}

TEST_F(DistributedNotificationCenterTest, DeliversANotificationWithoutUserInfo)
{
    post("");
    ASSERT_EQ(received_.size(), 1U);
    EXPECT_EQ(received_[0].userInfo, std::nullopt);
}

TEST_F(DistributedNotificationCenterTest, DroppingAHandleEndsItsDeliveryOnly)
{
    int others = 0;
    auto other = center_.addObserver(name, [&others](const Notification&) { ++others; });
    post("Name=one");
    ASSERT_TRUE(probe::runUntil([&] { return others == 1; }));
    std::thread([&other] { other.reset(); }).join();
    post("Name=two");
    post("Name=three");
    EXPECT_EQ(others, 1);
    EXPECT_EQ(received_.size(), 3U);
}

}  // namespace
}  // namespace sonvara::test
