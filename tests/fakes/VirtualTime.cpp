#include "fakes/VirtualTime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>

namespace sonvara::test {

namespace {

constexpr std::size_t mostStepsAtOneMoment = 200'000;
// 2021-03-04 14:03:27 in a time zone of its own.
constexpr std::chrono::seconds startOfTime{1'614'866'607};

thread_local void* currentWorker = nullptr;

}  // namespace

/// A thread that has the baton or waits for it.
class VirtualTime::Worker {
public:
    Worker() : thread_([this] { loop(); }) {}
    ~Worker()
    {
        pass([this] { isQuitting_ = true; });
        thread_.join();
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Scheduler: runs `task` until it ends or blocks.
    void start(Task task)
    {
        pass([this, &task] { task_ = std::move(task); });
        awaitScheduler();
    }
    /// Scheduler: goes on with a blocked task.
    void resume()
    {
        pass([] {});
        awaitScheduler();
    }
    /// The worker itself: gives the baton back until resumed.
    void block(std::function<bool()> condition)
    {
        std::unique_lock lock(mutex_);
        condition_ = std::move(condition);
        isRunning_ = false;
        changed_.notify_all();
        changed_.wait(lock, [this] { return isRunning_; });
        condition_ = nullptr;
    }

    [[nodiscard]] bool isBlocked() const { return condition_ != nullptr; }
    [[nodiscard]] bool canGoOn() const { return condition_(); }
    std::uint64_t order = 0;

private:
    template <typename Change>
    void pass(Change change)
    {
        const std::lock_guard lock(mutex_);
        change();
        isRunning_ = true;
        changed_.notify_all();
    }
    void awaitScheduler()
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return !isRunning_; });
    }
    void loop()
    {
        currentWorker = this;
        std::unique_lock lock(mutex_);
        while (true) {
            changed_.wait(lock, [this] { return isRunning_; });
            if (isQuitting_) return;
            auto task = std::exchange(task_, nullptr);
            lock.unlock();
            task();
            task = nullptr;  // what it held goes while the worker still has the baton
            lock.lock();
            isRunning_ = false;
            changed_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    Task task_;
    std::function<bool()> condition_;
    bool isRunning_ = false;
    bool isQuitting_ = false;
    std::thread thread_;  // last: it uses the others
};

class VirtualTime::Timer final : public RepeatingTimer {
public:
    Timer(Duration every, Task run) : interval(every), action(std::move(run)) {}
    void invalidate() override { action = nullptr; }
    Duration interval;
    Task action;
};

class VirtualTime::Delayed final : public DelayedTask {
public:
    void cancel() override { isCancelled = true; }
    std::atomic<bool> isCancelled = false;
};

VirtualTime::VirtualTime() = default;

VirtualTime::~VirtualTime()
{
    end();
}

void VirtualTime::end()
{
    isEnding_ = true;
    while (!blocked_.empty()) resumeWorker(0);
}

void VirtualTime::post(Task task)
{
    if (isEnding_) return;
    readyMain_.push_back({nextOrder_++, std::move(task)});
}

void VirtualTime::post(QualityOfService quality, Task task)
{
    if (isEnding_) return;
    qualities_.push_back(quality);
    readyWork_.push_back({nextOrder_++, std::move(task)});
}

std::shared_ptr<DelayedTask> VirtualTime::postAfter(QualityOfService quality, Duration delay, Task task)
{
    auto delayed = std::make_shared<Delayed>();
    ++delayedWork_;
    addDue(elapsed_ + delay, [this, quality, delayed, task = std::move(task)] {
        --delayedWork_;
        if (!delayed->isCancelled) post(quality, task);
    });
    return delayed;
}

std::shared_ptr<RepeatingTimer> VirtualTime::scheduleTimer(Duration interval, Task action)
{
    EXPECT_TRUE(isMainThread()) << "timers are scheduled on the main thread";
    auto timer = std::make_shared<Timer>(interval, std::move(action));
    std::erase_if(timers_, [](const auto& known) { return known.expired(); });
    timers_.push_back(timer);
    scheduleTick(timer);
    return timer;
}

void VirtualTime::scheduleTick(const std::shared_ptr<Timer>& timer)
{
    addDue(elapsed_ + timer->interval, [this, timer] {
        if (!timer->action) return;
        readyMain_.push_back({nextOrder_++, [timer] {
                                  if (timer->action) timer->action();
                              }});
        scheduleTick(timer);
    });
}

WallTime VirtualTime::now() const
{
    return WallTime(startOfTime) + elapsed_ + wallOffset_;
}

std::string VirtualTime::timeText(WallTime time) const
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time.time_since_epoch()).count();
    const auto ofDay = seconds % 86'400;
    std::string text;
    for (const auto part : {ofDay / 3'600, ofDay / 60 % 60, ofDay % 60}) {
        if (!text.empty()) text += ':';
        text += std::to_string(part / 10) + std::to_string(part % 10);
    }
    return text;
}

void VirtualTime::run()
{
    ASSERT_TRUE(isMainThread());
    for (std::size_t steps = 0; step(); ++steps) {
        ASSERT_LT(steps, mostStepsAtOneMoment) << "work that posts itself without end";
    }
}

void VirtualTime::advance(Duration duration)
{
    const auto target = elapsed_ + duration;
    run();
    for (auto due = nextDue(); due && *due <= target; due = nextDue()) {
        elapsed_ = *due;
        wakeDue();
        run();
        if (testing::Test::HasFatalFailure()) return;
    }
    elapsed_ = target;
}

std::optional<VirtualTime::Duration> VirtualTime::nextDue() const
{
    if (due_.empty()) return std::nullopt;
    return due_.begin()->first.first;
}

void VirtualTime::wakeDue()
{
    while (!due_.empty() && due_.begin()->first.first <= elapsed_) {
        auto entry = due_.extract(due_.begin());
        entry.mapped()();
    }
}

bool VirtualTime::step()
{
    // Every candidate with its place in line; the main queue is serial, workers are not.
    std::vector<std::pair<std::uint64_t, std::function<void()>>> candidates;
    if (!readyMain_.empty()) candidates.emplace_back(readyMain_.front().order, [this] { runReadyMain(); });
    if (!readyWork_.empty()) candidates.emplace_back(readyWork_.front().order, [this] { startWorker(); });
    for (std::size_t i = 0; i < blocked_.size(); ++i) {
        if (blocked_[i]->canGoOn())
            candidates.emplace_back(blocked_[i]->order, [this, i] { resumeWorker(i); });
    }
    if (candidates.empty()) return false;
    auto chosen = std::ranges::min_element(candidates, {}, [](const auto& it) { return it.first; });
    if (random_) {
        std::uniform_int_distribution<std::size_t> any(0, candidates.size() - 1);
        chosen = candidates.begin() + static_cast<std::ptrdiff_t>(any(*random_));
    }
    chosen->second();
    return true;
}

void VirtualTime::runReadyMain()
{
    auto task = std::move(readyMain_.front().task);
    readyMain_.pop_front();
    task();
}

void VirtualTime::startWorker()
{
    auto task = std::move(readyWork_.front().task);
    readyWork_.pop_front();
    auto worker = idle_.empty() ? std::make_shared<Worker>() : idle_.back();
    if (!idle_.empty()) idle_.pop_back();
    worker->start(std::move(task));
    collect(worker);
}

void VirtualTime::resumeWorker(std::size_t index)
{
    const auto worker = blocked_[index];
    blocked_.erase(blocked_.begin() + static_cast<std::ptrdiff_t>(index));
    worker->resume();
    collect(worker);
}

void VirtualTime::collect(const std::shared_ptr<Worker>& worker)
{
    worker->order = nextOrder_++;
    (worker->isBlocked() ? blocked_ : idle_).push_back(worker);
}

void VirtualTime::blockWorker(std::function<bool()> condition, Duration atMost)
{
    ASSERT_FALSE(isMainThread()) << "the main thread must never block";
    if (isEnding_) return;
    const auto end = elapsed_ + atMost;
    if (atMost > Duration::zero()) addDue(end, [] {});  // so that time stops there
    static_cast<Worker*>(currentWorker)->block([this, end, condition = std::move(condition)] {
        return elapsed_ >= end || condition();
    });
}

std::size_t VirtualTime::pendingWork() const
{
    return readyMain_.size() + readyWork_.size() + blocked_.size() + delayedWork_;
}

std::size_t VirtualTime::repeatingTimers() const
{
    return static_cast<std::size_t>(std::count_if(timers_.begin(), timers_.end(), [](const auto& known) {
        const auto timer = known.lock();
        return timer && timer->action;
    }));
}

}  // namespace sonvara::test
