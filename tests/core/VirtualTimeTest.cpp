// The tests' own clock and queues keep the contract of the ports.
#include "fakes/VirtualTime.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

TEST(VirtualTimeTest, MainTasksRunLaterAndInOrderAlsoWhenPostedByATask)
{
    VirtualTime time;
    std::string order;
    time.post([&] {
        order += 'a';
        time.post([&] { order += 'c'; });
        order += 'b';
    });
    EXPECT_EQ(order, "");
    time.run();
    EXPECT_EQ(order, "abc");
}

TEST(VirtualTimeTest, AWorkerRunsOffTheMainThread)
{
    VirtualTime time;
    bool onMain = true;
    time.post(QualityOfService::utility, [&] { onMain = time.isMainThread(); });
    time.run();
    EXPECT_FALSE(onMain);
    EXPECT_TRUE(time.isMainThread());
}

TEST(VirtualTimeTest, ABlockedWorkerHoldsNobodyElse)
{
    VirtualTime time;
    std::string order;
    time.post(QualityOfService::utility, [&] {
        time.sleepWorker(10ms);
        order += 's';
    });
    time.post(QualityOfService::utility, [&] { order += 'w'; });
    time.post([&] { order += 'm'; });
    time.run();
    EXPECT_EQ(order, "wm");
    time.advance(10ms);
    EXPECT_EQ(order, "wms");
}

TEST(VirtualTimeTest, DelayedTasksRunInOrderOfTimeUnlessCancelled)
{
    VirtualTime time;
    std::string order;
    time.postAfter(QualityOfService::standard, 20ms, [&] { order += 'b'; });
    time.postAfter(QualityOfService::standard, 10ms, [&] { order += 'a'; });
    const auto cancelled = time.postAfter(QualityOfService::standard, 15ms, [&] { order += 'x'; });
    cancelled->cancel();
    time.advance(15ms);
    EXPECT_EQ(order, "a");
    time.advance(5ms);
    EXPECT_EQ(order, "ab");
    EXPECT_EQ(time.pendingWork(), 0U);
}

TEST(VirtualTimeTest, ATimerTicksEveryIntervalUntilInvalidatedAlsoWithoutItsHandle)
{
    VirtualTime time;
    int ticks = 0;
    auto timer = time.scheduleTimer(3s, [&] { ++ticks; });
    time.advance(9s);
    EXPECT_EQ(ticks, 3);
    const std::weak_ptr<RepeatingTimer> weak = timer;
    timer.reset();
    time.advance(3s);
    EXPECT_EQ(ticks, 4);
    ASSERT_FALSE(weak.expired());
    weak.lock()->invalidate();
    time.advance(9s);
    EXPECT_EQ(ticks, 4);
}

TEST(VirtualTimeTest, TheSameSeedGivesTheSameOrder)
{
    const auto orderWith = [](std::uint32_t seed) {
        VirtualTime time;
        time.shuffle(seed);
        std::string order;
        for (char c = 'a'; c <= 'h'; ++c) {
            time.post(QualityOfService::utility, [&time, &order, c] {
                time.sleepWorker(0ms);
                order += c;
            });
        }
        time.run();
        return order;
    };
    EXPECT_EQ(orderWith(1), orderWith(1));
    EXPECT_NE(orderWith(1), orderWith(2));
}

TEST(VirtualTimeTest, BlockedWorkersAreLetGoAtTheEnd)
{
    bool ended = false;
    {
        VirtualTime time;
        time.post(QualityOfService::utility, [&] {
            time.sleepWorker(1h);
            ended = true;
        });
        time.run();
        EXPECT_FALSE(ended);
    }
    EXPECT_TRUE(ended);
}

}  // namespace
}  // namespace sonvara::test
