// The main queue on the main dispatch queue, its timer on the main run loop.
#pragma once

#include "ports/Queues.h"

namespace sonvara {

class DispatchMainQueue final : public MainQueue {
public:
    void post(Task task) override;

    /// The timer runs in the run loop's default mode: it pauses while a menu is open, and its one
    /// overdue tick comes when the menu has closed. When the Mac wakes from sleep it ticks at once.
    [[nodiscard]] std::shared_ptr<RepeatingTimer> scheduleTimer(std::chrono::milliseconds interval,
                                                                Task action) override;
};

}  // namespace sonvara
