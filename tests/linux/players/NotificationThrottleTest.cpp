#include "platform/linux/players/NotificationThrottle.h"

#include <gtest/gtest.h>

#include <string>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

PlayerSnapshot playing(const std::string& title)
{
    return {PlaybackStatus::playing, title, "Artist", "Album", false};
}

TEST(NotificationThrottleTest, AdmitsEachChangeOnceAndAtOnce)
{
    NotificationThrottle throttle;
    const Time now{};
    EXPECT_FALSE(throttle.admits(PlayerSnapshot{}, now)) << "nothing is what there was at first";
    EXPECT_TRUE(throttle.admits(playing("One"), now));
    EXPECT_FALSE(throttle.admits(playing("One"), now));
    EXPECT_TRUE(throttle.admits(playing("Two"), now + 1s));
    EXPECT_TRUE(throttle.admits(PlayerSnapshot{}, now + 2s));
    EXPECT_FALSE(throttle.deadline());
}

TEST(NotificationThrottleTest, AFloodIsToldByItsLatestTrack)
{
    NotificationThrottle throttle;
    Time now{};
    int told = 0;
    for (int i = 0; i < 5000; ++i, now += 200us)
        if (throttle.admits(playing(std::to_string(i)), now)) ++told;
    EXPECT_LE(told, 30);
    ASSERT_TRUE(throttle.deadline());
    EXPECT_TRUE(throttle.admits(playing("4999"), *throttle.deadline()));
    EXPECT_FALSE(throttle.deadline());
}

TEST(NotificationThrottleTest, AFewQuickChangesAreAllTold)
{
    NotificationThrottle throttle;
    for (int i = 0; i < NotificationThrottle::burst; ++i)
        EXPECT_TRUE(throttle.admits(playing(std::to_string(i)), Time{}));
}

TEST(NotificationThrottleTest, TenAreToldAtOnceAndThenOneEachFiftyMilliseconds)
{
    NotificationThrottle throttle;
    Time now{};
    for (int i = 0; i < 10; ++i) EXPECT_TRUE(throttle.admits(playing(std::to_string(i)), now)) << i;
    for (int i = 10; i < 13; ++i) {
        EXPECT_FALSE(throttle.admits(playing(std::to_string(i)), now)) << i;
        EXPECT_EQ(throttle.deadline(), now + 50ms);
        EXPECT_FALSE(throttle.admits(playing(std::to_string(i)), now + 49ms)) << i;
        now += 50ms;
        EXPECT_TRUE(throttle.admits(playing(std::to_string(i)), now)) << i;
    }
}

TEST(NotificationThrottleTest, AChangeUndoneBeforeItsTurnIsNone)
{
    NotificationThrottle throttle;
    const Time now{};
    for (int i = 0; i < NotificationThrottle::burst; ++i)
        ASSERT_TRUE(throttle.admits(playing(std::to_string(i)), now));
    EXPECT_FALSE(throttle.admits(playing("Two"), now + 1ms));
    EXPECT_EQ(throttle.deadline(), now + NotificationThrottle::interval);
    EXPECT_FALSE(throttle.admits(playing("9"), now + 2ms));
    EXPECT_FALSE(throttle.deadline());
}

}  // namespace
}  // namespace sonvara::test
