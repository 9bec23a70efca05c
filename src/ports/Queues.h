// Ports: the queues of the main thread, with its repeating timer, and of the workers.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace sonvara {

/// A closure that a queue runs once and then destroys. It must not throw. A queue that ends before
/// the task's turn destroys it without running it.
using Task = std::function<void()>;

/// A timer on the main thread's run loop. Dropping the handle does not stop it: the run loop keeps
/// a scheduled timer until it is invalidated.
class RepeatingTimer {
public:
    virtual ~RepeatingTimer() = default;

    /// Main thread: stops the timer for good and destroys its action.
    virtual void invalidate() = 0;
};

/// The one serial queue of the main thread.
class MainQueue {
public:
    virtual ~MainQueue() = default;

    /// Any thread: runs `task` later on the main thread, after everything posted before it. Never
    /// runs it in place, also when the caller is on the main thread. Never blocks, never fails.
    virtual void post(Task task) = 0;

    /// Main thread: runs `action` on the main thread every `interval`, the first time one interval
    /// from now. Ticks that were missed while the main thread was busy are not made up.
    [[nodiscard]] virtual std::shared_ptr<RepeatingTimer> scheduleTimer(std::chrono::milliseconds interval,
                                                                        Task action) = 0;
};

/// How urgent background work is to the user, most urgent first.
enum class QualityOfService { userInitiated, standard, utility };

/// A task scheduled for later. Dropping the handle leaves it scheduled.
class DelayedTask {
public:
    virtual ~DelayedTask() = default;

    /// Any thread: the task is not run, if it has not begun; does nothing otherwise. Does not wait.
    virtual void cancel() = 0;
};

/// The concurrent queues for work off the main thread. Tasks may block; each blocked task holds one
/// worker, and others go on beside it. Tasks start in order of submission for each quality of
/// service and may finish in any order.
class GlobalQueue {
public:
    virtual ~GlobalQueue() = default;

    /// Any thread: runs `task` on a worker thread. Never in place, never blocks.
    virtual void post(QualityOfService quality, Task task) = 0;

    /// Any thread: runs `task` on a worker thread after `delay`, unless it is cancelled before.
    virtual std::shared_ptr<DelayedTask> postAfter(QualityOfService quality, std::chrono::milliseconds delay,
                                                   Task task) = 0;
};

}  // namespace sonvara
