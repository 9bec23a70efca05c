// Port: work on the main thread, and its repeating timer.
#pragma once

#include "ports/Task.h"

#include <chrono>
#include <memory>

namespace sonvara {

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

}  // namespace sonvara
