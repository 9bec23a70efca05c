// The threads of the worker pool and the tasks that wait for them.
#pragma once

#include "ports/Queues.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>

namespace sonvara {

/// All methods may be called on any thread. The threads hold the object, so a busy one may outlive
/// its owner.
class Workers final : public std::enable_shared_from_this<Workers> {
public:
    /// Of several idle threads one leaves when they have not all been busy for `quietWhile`.
    explicit Workers(std::chrono::milliseconds quietWhile) : quietWhile_(quietWhile) {}

    void post(QualityOfService quality, Task task);
    bool shutDown(std::chrono::milliseconds limit);
    [[nodiscard]] std::size_t threadCount() const;

private:
    struct Lane {
        std::size_t limit;  ///< how many of its tasks may run at once
        std::size_t running = 0;
        std::deque<Task> waiting = {};  ///< in order of submission

        [[nodiscard]] std::size_t runnable() const;
    };

    // These are called with the lock held.
    [[nodiscard]] std::size_t runnable() const;
    [[nodiscard]] Lane* nextLane();
    void startThread();
    bool waitForWork(std::unique_lock<std::mutex>& lock);

    void work();

    const std::chrono::milliseconds quietWhile_;
    mutable std::mutex mutex_;  // guards what follows
    std::condition_variable workArrived_;
    std::condition_variable threadLeft_;
    std::array<Lane, 3> lanes_{Lane{64}, Lane{16}, Lane{16}};  // by quality of service, most urgent first
    std::size_t threads_ = 0;
    std::size_t idle_ = 0;  // threads that run no task, with those that have only just been started
    std::chrono::steady_clock::time_point allBusy_{};  // when no thread was idle, last
    bool isShutDown_ = false;
};

}  // namespace sonvara
