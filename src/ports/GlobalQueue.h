// Port: concurrent background work by quality of service.
#pragma once

#include "ports/Task.h"

#include <chrono>
#include <memory>

namespace sonvara {

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
