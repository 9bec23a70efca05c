// What every implementation of the queue ports promises, as tests to instantiate for each of them.
//
// A host gives `mainQueue()`, `globalQueue()`, `eventually(condition)`, which lets main-queue work run
// until the condition holds and returns false when it does not come to hold within a generous time, and
// `shutDown()`, which ends the queues.
#pragma once

#include "ports/Queues.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

namespace sonvara::test {

using namespace std::chrono_literals;

template <typename Host>
class QueueContract : public testing::Test {
protected:
    Host host_;
};

TYPED_TEST_SUITE_P(QueueContract);

TYPED_TEST_P(QueueContract, RunsMainTasksLaterInOrderOfSubmission)
{
    std::vector<int> ran;
    for (int i = 0; i < 1000; ++i) this->host_.mainQueue().post([&ran, i] { ran.push_back(i); });
    EXPECT_TRUE(ran.empty());
    ASSERT_TRUE(this->host_.eventually([&] { return ran.size() == 1000; }));
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(ran[static_cast<std::size_t>(i)], i);
}

TYPED_TEST_P(QueueContract, RunsWhatATaskPostsAfterThatTask)
{
    std::vector<int> ran;
    auto& queue = this->host_.mainQueue();
    queue.post([&] {
        queue.post([&] { ran.push_back(3); });
        ran.push_back(1);
    });
    queue.post([&] { ran.push_back(2); });
    ASSERT_TRUE(this->host_.eventually([&] { return ran.size() == 3; }));
    EXPECT_EQ(ran, (std::vector{1, 2, 3}));
}

TYPED_TEST_P(QueueContract, RunsWorkersPostsOnTheMainThread)
{
    std::thread::id ran;
    this->host_.globalQueue().post(QualityOfService::utility, [&] {
        this->host_.mainQueue().post([&] { ran = std::this_thread::get_id(); });
    });
    ASSERT_TRUE(this->host_.eventually([&] { return ran != std::thread::id(); }));
    EXPECT_EQ(ran, std::this_thread::get_id());
}

TYPED_TEST_P(QueueContract, DestroysAMainTaskThatHasRun)
{
    auto token = std::make_shared<int>();
    const std::weak_ptr<int> watched = token;
    bool ran = false;
    this->host_.mainQueue().post([held = std::move(token), &ran] { ran = true; });
    ASSERT_TRUE(this->host_.eventually([&] { return ran; }));
    EXPECT_TRUE(watched.expired());
}

TYPED_TEST_P(QueueContract, DestroysMainTasksThatNeverRun)
{
    auto token = std::make_shared<int>();
    const std::weak_ptr<int> watched = token;
    bool ran = false;
    this->host_.mainQueue().post([held = std::move(token), &ran] { ran = true; });
    this->host_.shutDown();
    EXPECT_TRUE(watched.expired());
    EXPECT_FALSE(ran);
}

TYPED_TEST_P(QueueContract, TimerGoesOnWithoutItsHandle)
{
    int ticks = 0;
    this->host_.mainQueue().scheduleTimer(5ms, [&] { ++ticks; }).reset();
    EXPECT_EQ(ticks, 0);
    EXPECT_TRUE(this->host_.eventually([&] { return ticks == 3; }));
}

TYPED_TEST_P(QueueContract, InvalidatedTimerIsSilentAndDestroysItsAction)
{
    auto token = std::make_shared<int>();
    const std::weak_ptr<int> watched = token;
    int ticks = 0;
    int others = 0;
    const auto timer =
        this->host_.mainQueue().scheduleTimer(5ms, [held = std::move(token), &ticks] { ++ticks; });
    const auto other = this->host_.mainQueue().scheduleTimer(5ms, [&] { ++others; });
    ASSERT_TRUE(this->host_.eventually([&] { return ticks > 0; }));
    timer->invalidate();
    timer->invalidate();
    EXPECT_TRUE(watched.expired());
    const int last = ticks;
    const int before = others;
    ASSERT_TRUE(this->host_.eventually([&] { return others >= before + 5; }));
    EXPECT_EQ(ticks, last);
}

TYPED_TEST_P(QueueContract, ATimerMayInvalidateItself)
{
    int ticks = 0;
    int others = 0;
    std::shared_ptr<RepeatingTimer> timer;
    timer = this->host_.mainQueue().scheduleTimer(5ms, [&] {
        timer->invalidate();
        ++ticks;
    });
    const auto other = this->host_.mainQueue().scheduleTimer(5ms, [&] { ++others; });
    ASSERT_TRUE(this->host_.eventually([&] { return others >= 5; }));
    EXPECT_EQ(ticks, 1);
}

TYPED_TEST_P(QueueContract, RunsBackgroundTasksOfEveryQuality)
{
    std::atomic<int> ran = 0;
    for (const auto quality :
         {QualityOfService::userInitiated, QualityOfService::standard, QualityOfService::utility})
        this->host_.globalQueue().post(quality, [&] { ++ran; });
    EXPECT_TRUE(this->host_.eventually([&] { return ran == 3; }));
}

TYPED_TEST_P(QueueContract, DelayedTaskRunsOnceAndIsDestroyedThoughItsHandleStays)
{
    auto token = std::make_shared<int>();
    const std::weak_ptr<int> watched = token;
    std::atomic<int> ran = 0;
    const auto task = this->host_.globalQueue().postAfter(QualityOfService::standard, 5ms,
                                                          [held = std::move(token), &ran] { ++ran; });
    EXPECT_TRUE(this->host_.eventually([&] { return ran == 1 && watched.expired(); }));
    task->cancel();
    EXPECT_EQ(ran, 1);
}

TYPED_TEST_P(QueueContract, DelayedTaskRunsWithoutItsHandle)
{
    std::atomic<bool> ran = false;
    this->host_.globalQueue().postAfter(QualityOfService::standard, 5ms, [&] { ran = true; }).reset();
    EXPECT_TRUE(this->host_.eventually([&] { return ran.load(); }));
}

TYPED_TEST_P(QueueContract, CancelledTaskIsNotRun)
{
    std::atomic<bool> ran = false;
    std::atomic<bool> laterRan = false;
    auto& queue = this->host_.globalQueue();
    queue.postAfter(QualityOfService::standard, 20ms, [&] { ran = true; })->cancel();
    const auto later = queue.postAfter(QualityOfService::standard, 60ms, [&] { laterRan = true; });
    ASSERT_TRUE(this->host_.eventually([&] { return laterRan.load(); }));
    EXPECT_FALSE(ran);
}

TYPED_TEST_P(QueueContract, DelayedTasksRunByDueTime)
{
    std::atomic<int> order = 0;
    std::atomic<int> first = 0;
    std::atomic<int> second = 0;
    auto& queue = this->host_.globalQueue();
    const auto late = queue.postAfter(QualityOfService::standard, 150ms, [&] { second = ++order; });
    const auto early = queue.postAfter(QualityOfService::standard, 10ms, [&] { first = ++order; });
    ASSERT_TRUE(this->host_.eventually([&] { return second != 0 && first != 0; }));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
}

REGISTER_TYPED_TEST_SUITE_P(QueueContract, RunsMainTasksLaterInOrderOfSubmission,
                            RunsWhatATaskPostsAfterThatTask, RunsWorkersPostsOnTheMainThread,
                            DestroysAMainTaskThatHasRun, DestroysMainTasksThatNeverRun,
                            TimerGoesOnWithoutItsHandle, InvalidatedTimerIsSilentAndDestroysItsAction,
                            ATimerMayInvalidateItself, RunsBackgroundTasksOfEveryQuality,
                            DelayedTaskRunsOnceAndIsDestroyedThoughItsHandleStays,
                            DelayedTaskRunsWithoutItsHandle, CancelledTaskIsNotRun, DelayedTasksRunByDueTime);

}  // namespace sonvara::test
