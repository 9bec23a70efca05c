#include "helpers/EventLoop.h"

#include "platform/linux/system/QtMainQueue.h"

#include <QEventLoop>
#include <algorithm>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace sonvara::test {

namespace {

TEST(QtMainQueueTest, KeepsTheOrderWhenATaskRunsAnEventLoop)
{
    QtMainQueue queue;
    std::vector<int> ran;
    queue.post([&] {
        ran.push_back(1);
        QEventLoop loop;
        queue.post([&] {
            ran.push_back(3);
            loop.quit();
        });
        loop.exec();
        ran.push_back(4);
    });
    queue.post([&] { ran.push_back(2); });
    ASSERT_TRUE(eventually([&] { return ran.size() == 4; }));
    EXPECT_EQ(ran, (std::vector{1, 2, 3, 4}));
}

TEST(QtMainQueueTest, ATaskThatPostsItselfDoesNotStarveTimers)
{
    QtMainQueue queue;
    bool isOver = false;
    Task again = [&] {
        if (!isOver) queue.post(again);
    };
    queue.post(again);
    const auto timer = queue.scheduleTimer(std::chrono::milliseconds(5), [&] { isOver = true; });
    EXPECT_TRUE(eventually([&] { return isOver; }));
}

TEST(QtMainQueueTest, KeepsTheOrderOfEachPostingThread)
{
    constexpr int threadCount = 4;
    constexpr int taskCount = 500;
    QtMainQueue queue;
    std::vector<std::vector<int>> ran(threadCount);
    std::vector<std::thread> threads;
    int total = 0;
    for (std::size_t t = 0; t < threadCount; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < taskCount; ++i)
                queue.post([&, t, i] {
                    ran[t].push_back(i);
                    ++total;
                });
        });
    EXPECT_TRUE(eventually([&] { return total == threadCount * taskCount; }));
    for (auto& thread : threads) thread.join();
    for (const auto& list : ran) EXPECT_TRUE(std::ranges::is_sorted(list));
}

TEST(QtMainQueueTest, MissedTicksAreNotMadeUp)
{
    QtMainQueue queue;
    int ticks = 0;
    bool marked = false;
    int ticksAtMark = 0;
    const auto timer = queue.scheduleTimer(std::chrono::milliseconds(20), [&] { ++ticks; });
    queue.post([&] {  // holds the main thread for ten intervals
        const QDeadlineTimer busy(200);
        while (!busy.hasExpired()) {
        }
    });
    queue.post([&] { queue.post([&] { ticksAtMark = ticks, marked = true; }); });
    ASSERT_TRUE(eventually([&] { return marked; }));
    EXPECT_LE(ticksAtMark, 2);
}

}  // namespace

}  // namespace sonvara::test
