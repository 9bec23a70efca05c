// The main queue, its timer, and the queues for work off the main thread.
#include "Probe.h"
#include "platform/macos/system/DispatchGlobalQueue.h"
#include "platform/macos/system/DispatchMainQueue.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <numeric>
#include <thread>

using namespace std::chrono_literals;

namespace sonvara::test {
namespace {

TEST(DispatchMainQueueTest, RunsTasksLaterAndInOrder)
{
    DispatchMainQueue queue;
    std::vector<int> ran;
    for (int i = 0; i < 100; ++i) queue.post([&ran, i] { ran.push_back(i); });
    EXPECT_TRUE(ran.empty());
    ASSERT_TRUE(probe::runUntil([&] { return ran.size() == 100; }));
    std::vector<int> expected(100);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(ran, expected);
}

TEST(DispatchMainQueueTest, RunsAWorkersTaskOnTheMainThreadAndDestroysItThere)
{
    DispatchMainQueue queue;
    DispatchGlobalQueue workers;
    const auto token = std::make_shared<int>();
    std::thread::id worker;
    std::thread::id ran;
    workers.post(QualityOfService::utility, [&, token] {
        worker = std::this_thread::get_id();
        queue.post([&ran, token] { ran = std::this_thread::get_id(); });
    });
    ASSERT_TRUE(probe::runUntil([&] { return ran != std::thread::id() && token.use_count() == 1; }));
    EXPECT_EQ(ran, std::this_thread::get_id());
    EXPECT_NE(worker, ran);
}

TEST(DispatchMainQueueTest, TimerTicksWithoutItsHandleUntilItIsInvalidated)
{
    DispatchMainQueue queue;
    const auto ticks = std::make_shared<int>(0);  // this timer goes on for good
    (void)queue.scheduleTimer(5ms, [ticks] { ++*ticks; });
    const auto token = std::make_shared<int>();
    int others = 0;
    auto timer = queue.scheduleTimer(5ms, [&others, token] { ++others; });
    ASSERT_TRUE(probe::runUntil([&] { return *ticks >= 3 && others >= 3; }));
    timer->invalidate();
    EXPECT_EQ(token.use_count(), 1);
    const int last = others;
    const int before = *ticks;
    ASSERT_TRUE(probe::runUntil([&] { return *ticks >= before + 3; }));
    EXPECT_EQ(others, last);
}

TEST(DispatchMainQueueTest, TimerMayInvalidateItself)
{
    DispatchMainQueue queue;
    int ticks = 0;
    std::shared_ptr<RepeatingTimer> timer;
    timer = queue.scheduleTimer(5ms, [&] {
        timer->invalidate();
        ++ticks;
    });
    int others = 0;
    const auto other = queue.scheduleTimer(5ms, [&] { ++others; });
    ASSERT_TRUE(probe::runUntil([&] { return others >= 3; }));
    other->invalidate();
    EXPECT_EQ(ticks, 1);
}

TEST(DispatchGlobalQueueTest, TasksThatBlockHoldUpNobody)
{
    DispatchGlobalQueue queue;
    std::promise<void> gate;
    const auto open = gate.get_future().share();
    std::atomic<int> blocked = 0;
    std::atomic<int> ended = 0;
    for (int i = 0; i < 8; ++i) {
        queue.post(QualityOfService::userInitiated, [&blocked, &ended, open] {
            ++blocked;
            open.wait();
            ++ended;
        });
    }
    ASSERT_TRUE(probe::runUntil([&] { return blocked == 8; }));
    gate.set_value();
    EXPECT_TRUE(probe::runUntil([&] { return ended == 8; }));
}

TEST(DispatchGlobalQueueTest, RunsADelayedTaskWithoutItsHandle)
{
    DispatchGlobalQueue queue;
    std::atomic<bool> ran = false;
    (void)queue.postAfter(QualityOfService::standard, 5ms, [&ran] { ran = true; });
    EXPECT_TRUE(probe::runUntil([&] { return ran.load(); }));
}

TEST(DispatchGlobalQueueTest, CancelDropsATaskThatHasNotBegun)
{
    DispatchGlobalQueue queue;
    const auto token = std::make_shared<int>();
    std::atomic<bool> later = false;
    const auto task = queue.postAfter(QualityOfService::standard, 20ms, [token] { FAIL() << "cancelled"; });
    task->cancel();
    EXPECT_EQ(token.use_count(), 1);
    (void)queue.postAfter(QualityOfService::standard, 60ms, [&later] { later = true; });
    EXPECT_TRUE(probe::runUntil([&] { return later.load(); }));
    task->cancel();
}

}  // namespace
}  // namespace sonvara::test
