// Main queue, global queue and clock in one: time moves only when the test says so.
#pragma once

#include "ports/Queues.h"
#include "ports/System.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace sonvara::test {

/// Runs everything that the system under test posts, one piece at a time, in order of submission or, with
/// a seed, in random order where the contract leaves the order open.
///
/// A worker task runs on a thread of its own, so that fakes can block in it as the real parts do, but the
/// threads take turns: exactly one runs at any moment. The test's own thread is the main thread. Endless
/// posting at one moment in time fails the test.
class VirtualTime final : public MainQueue, public GlobalQueue, public Clock {
public:
    using Duration = std::chrono::milliseconds;

    VirtualTime();
    ~VirtualTime() override;

    // MainQueue, GlobalQueue, Clock
    void post(Task task) override;
    std::shared_ptr<RepeatingTimer> scheduleTimer(Duration interval, Task action) override;
    void post(QualityOfService quality, Task task) override;
    std::shared_ptr<DelayedTask> postAfter(QualityOfService quality, Duration delay, Task task) override;
    [[nodiscard]] WallTime now() const override;
    [[nodiscard]] std::string timeText(WallTime time) const override;

    /// Test: runs all that is due, without moving time.
    void run();
    /// Test: moves time on by `duration`, running everything that falls due on the way.
    void advance(Duration duration);
    /// Test: from now on, whatever may run in any order does.
    void shuffle(std::uint32_t seed) { random_.emplace(seed); }
    /// Test: the wall clock jumps, as when the user sets it; timers do not notice.
    void setWallClockOffset(Duration offset) { wallOffset_ = offset; }

    /// Test: lets blocked workers run to their end; what is posted from now on is dropped. To be called
    /// before anything goes that they use.
    void end();

    /// Time since the start of the test.
    [[nodiscard]] Duration elapsed() const { return elapsed_; }
    [[nodiscard]] bool isMainThread() const { return std::this_thread::get_id() == mainThread_; }
    /// Work that is posted, delayed or blocked (repeating timers do not count).
    [[nodiscard]] std::size_t pendingWork() const;
    [[nodiscard]] std::size_t repeatingTimers() const;
    /// The quality of service of every task posted to the global queue, in order.
    [[nodiscard]] const std::vector<QualityOfService>& postedQualities() const { return qualities_; }

    /// Fakes, in a worker task: blocks it until `condition` holds, which is tried before each step, or
    /// `atMost` has passed.
    void blockWorker(std::function<bool()> condition, Duration atMost);
    /// Fakes, in a worker task: blocks it for `duration`; zero only lets others run first.
    void sleepWorker(Duration duration)
    {
        blockWorker([] { return false; }, duration);
    }

private:
    class Worker;
    class Timer;
    class Delayed;
    struct Ready {
        std::uint64_t order;
        Task task;
    };
    using DueTime = std::pair<Duration, std::uint64_t>;

    bool step();
    void runReadyMain();
    void startWorker();
    void resumeWorker(std::size_t index);
    void collect(const std::shared_ptr<Worker>& worker);
    void wakeDue();
    [[nodiscard]] std::optional<Duration> nextDue() const;
    void scheduleTick(const std::shared_ptr<Timer>& timer);
    void addDue(Duration due, Task makeReady)
    {
        due_.emplace(DueTime{due, nextOrder_++}, std::move(makeReady));
    }

    const std::thread::id mainThread_ = std::this_thread::get_id();
    Duration elapsed_{0};
    Duration wallOffset_{0};
    std::uint64_t nextOrder_ = 0;
    std::deque<Ready> readyMain_;
    std::deque<Ready> readyWork_;
    std::map<DueTime, Task> due_;
    std::vector<std::weak_ptr<Timer>> timers_;
    std::vector<std::shared_ptr<Worker>> blocked_;
    std::vector<std::shared_ptr<Worker>> idle_;
    std::vector<QualityOfService> qualities_;
    std::optional<std::mt19937> random_;
    std::size_t delayedWork_ = 0;
    bool isEnding_ = false;
};

}  // namespace sonvara::test
