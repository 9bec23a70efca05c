// Calls functions at later times, on a thread that exists only while something is to come.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace sonvara {

/// The clock is the monotonic one, which stands still while the machine sleeps: a delay limits work
/// that sleeps along with it.
class DelayTimer {
public:
    /// Names one call; unique for the timer's life.
    using Ticket = std::pair<std::chrono::steady_clock::time_point, std::uint64_t>;

    DelayTimer() = default;
    DelayTimer(const DelayTimer&) = delete;
    DelayTimer& operator=(const DelayTimer&) = delete;
    ~DelayTimer() { shutDown(); }

    /// Any thread: calls `call`, which must be short, on the timer's thread after `delay`. Calls that
    /// are due at the same time keep their order.
    Ticket schedule(std::chrono::milliseconds delay, std::function<void()> call);

    /// Any thread: forgets the call if it has not begun. Does not wait.
    void cancel(const Ticket& ticket);

    /// Forgets what is to come, waits for a call under way, and takes no more.
    void shutDown();

private:
    void start();  // with the lock held
    void run();

    std::mutex mutex_;  // guards what follows
    std::condition_variable changed_;
    std::map<Ticket, std::function<void()>> calls_;
    std::uint64_t lastNumber_ = 0;
    bool isShutDown_ = false;
    bool isRunning_ = false;  // whether thread_ still looks at the calls
    std::thread thread_;
};

}  // namespace sonvara
