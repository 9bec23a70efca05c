#include "helpers/EventLoop.h"

#include "platform/linux/system/WorkerPool.h"

#include <QTimer>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <future>
#include <gtest/gtest.h>
#include <latch>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace sonvara::test {

namespace {

using namespace std::chrono_literals;

// Tasks that block until the gate opens.
class Gate {
public:
    ~Gate() { open(); }
    void open()
    {
        if (!isOpen_.exchange(true)) promise_.set_value();
    }
    [[nodiscard]] Task blockedTask()
    {
        return [this, opened = opened_] {
            ++entered_;
            entered_.notify_all();
            opened.wait();
        };
    }
    void waitUntilEntered(int count)
    {
        for (int now = entered_; now < count; now = entered_) entered_.wait(now);
    }
    [[nodiscard]] int entered() const { return entered_; }

private:
    std::atomic<bool> isOpen_ = false;
    std::promise<void> promise_;
    std::shared_future<void> opened_ = promise_.get_future().share();
    std::atomic<int> entered_ = 0;
};

void runAndWait(GlobalQueue& queue, QualityOfService quality)
{
    std::promise<void> ran;
    queue.post(quality, [&] { ran.set_value(); });
    ran.get_future().wait();
}

int workers()
{
    int count = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream file(task.path() / "comm");
        std::string name;
        std::getline(file, name);
        if (name == "worker") ++count;
    }
    return count;
}

TEST(WorkerPoolTest, FiftyBlockedTasksGoOnSideBySide)
{
    WorkerPool pool;
    Gate gate;
    for (int i = 0; i < 50; ++i) pool.post(QualityOfService::userInitiated, gate.blockedTask());
    gate.waitUntilEntered(50);
    gate.open();
    EXPECT_TRUE(pool.shutDown(20s));
}

TEST(WorkerPoolTest, BlockedWorkOfOneQualityDoesNotHoldUpAnother)
{
    for (const auto blocked :
         {QualityOfService::userInitiated, QualityOfService::standard, QualityOfService::utility}) {
        WorkerPool pool;
        Gate gate;
        for (int i = 0; i < 200; ++i) pool.post(blocked, gate.blockedTask());
        for (const auto other :
             {QualityOfService::userInitiated, QualityOfService::standard, QualityOfService::utility})
            if (other != blocked) runAndWait(pool, other);
        std::promise<void> struck;
        const auto limit = pool.postAfter(blocked == QualityOfService::standard ? QualityOfService::utility
                                                                                : QualityOfService::standard,
                                          5ms, [&] { struck.set_value(); });
        auto strike = struck.get_future();
        EXPECT_TRUE(eventually([&] { return strike.wait_for(0s) == std::future_status::ready; }));
        EXPECT_LE(gate.entered(), 64);
        gate.open();
        EXPECT_TRUE(pool.shutDown(20s));
    }
}

TEST(WorkerPoolTest, TasksBeyondTheLimitRunWhenWorkersComeFree)
{
    WorkerPool pool;
    Gate gate;
    std::latch all(200);
    for (int i = 0; i < 200; ++i)
        pool.post(QualityOfService::utility, [&, task = gate.blockedTask()] {
            task();
            all.count_down();
        });
    gate.waitUntilEntered(16);
    gate.open();
    all.wait();
    EXPECT_TRUE(pool.shutDown(20s));
}

TEST(WorkerPoolTest, TasksStartInOrderOfSubmission)
{
    WorkerPool pool;
    Gate gate;
    std::vector<int> started;
    for (int i = 0; i < 15; ++i) pool.post(QualityOfService::utility, gate.blockedTask());
    gate.waitUntilEntered(15);  // one worker is left, so the next tasks run one after the other
    std::promise<void> done;
    for (int i = 0; i < 100; ++i)
        pool.post(QualityOfService::utility, [&, i] {
            started.push_back(i);
            if (i == 99) done.set_value();
        });
    done.get_future().wait();
    EXPECT_TRUE(std::ranges::is_sorted(started));
    gate.open();
    EXPECT_TRUE(pool.shutDown(20s));
}

TEST(WorkerPoolTest, IdleWorkersLeaveAfterAQuietWhile)
{
    WorkerPool pool(20ms);
    Gate gate;
    for (int i = 0; i < 50; ++i) pool.post(QualityOfService::userInitiated, gate.blockedTask());
    gate.waitUntilEntered(50);
    EXPECT_EQ(workers(), 50);
    gate.open();
    EXPECT_TRUE(eventually([] { return workers() == 0; }));
    runAndWait(pool, QualityOfService::userInitiated);
}

TEST(WorkerPoolTest, WorkersNeedNoDescriptors)
{
    rlimit usual{};
    ::getrlimit(RLIMIT_NOFILE, &usual);
    const rlimit few{64, usual.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
    std::vector<int> taken;
    for (int file = ::dup(0); file >= 0; file = ::dup(0)) taken.push_back(file);
    WorkerPool pool;
    Gate gate;
    for (int i = 0; i < 3; ++i) pool.post(QualityOfService::userInitiated, gate.blockedTask());
    gate.waitUntilEntered(3);
    gate.open();
    EXPECT_TRUE(pool.shutDown(20s));
    for (const int file : taken) ::close(file);
    ::setrlimit(RLIMIT_NOFILE, &usual);
}

TEST(WorkerPoolTest, OfWorkersThatTakeTurnsOneStays)
{
    WorkerPool pool(400ms);
    Gate gate;
    for (int i = 0; i < 3; ++i) pool.post(QualityOfService::utility, gate.blockedTask());
    gate.waitUntilEntered(3);
    gate.open();
    QTimer poll;
    int polls = 0;
    int most = 0;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        runAndWait(pool, QualityOfService::utility);
        most = std::max(most, workers());
        ++polls;
    });
    poll.start(300ms);
    EXPECT_TRUE(eventually([] { return workers() == 1; }));
    most = polls = 0;
    EXPECT_TRUE(eventually([&] { return polls == 2; }));
    EXPECT_EQ(most, 1) << "it takes what comes, and no other one is started";
}

TEST(WorkerPoolTest, ShutDownDropsWhatHasNotBegunAndDoesNotWaitForTheBlocked)
{
    auto gate = std::make_shared<Gate>();
    auto token = std::make_shared<int>();
    const std::weak_ptr<int> watched = token;
    std::atomic<bool> ran = false;
    {
        WorkerPool pool;
        for (int i = 0; i < 16; ++i) pool.post(QualityOfService::utility, gate->blockedTask());
        gate->waitUntilEntered(16);
        pool.post(QualityOfService::utility, [&, held = std::move(token)] { ran = true; });
        EXPECT_FALSE(pool.shutDown(10ms));
        EXPECT_TRUE(watched.expired());
        pool.post(QualityOfService::standard, [&] { ran = true; });
        pool.postAfter(QualityOfService::standard, 0ms, [&] { ran = true; })->cancel();
        gate->open();
        EXPECT_TRUE(pool.shutDown(20s));
    }
    EXPECT_FALSE(ran);
}

TEST(WorkerPoolTest, ACancelledTaskIsDestroyedAtOnce)
{
    WorkerPool pool;
    auto token = std::make_shared<int>();
    const std::weak_ptr<int> watched = token;
    pool.postAfter(QualityOfService::standard, 1h, [held = std::move(token)] {})->cancel();
    EXPECT_TRUE(watched.expired());
}

TEST(WorkerPoolTest, TheEndOfThePoolForgetsDelayedTasks)
{
    auto token = std::make_shared<int>();
    const std::weak_ptr<int> watched = token;
    {
        WorkerPool pool;
        pool.postAfter(QualityOfService::standard, 1h, [held = std::move(token)] {}).reset();
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
}

TEST(WorkerPoolTest, ATaskThatIsCancelledWhenItIsDueRunsAtMostOnceAndIsDestroyed)
{
    WorkerPool pool;
    std::vector<std::atomic<int>> runs(300);
    auto token = std::make_shared<int>();
    const std::weak_ptr<int> watched = token;
    for (auto& count : runs)
        pool.postAfter(QualityOfService::standard, 0ms, [&count, token] { ++count; })->cancel();
    token.reset();
    EXPECT_TRUE(pool.shutDown(20s));
    for (const auto& count : runs) EXPECT_LE(count, 1);
    EXPECT_TRUE(watched.expired());
}

}  // namespace

}  // namespace sonvara::test
