// The main queue on Qt's event loop.
#pragma once

#include "platform/linux/system/QtSerialQueue.h"
#include "ports/Queues.h"

#include <memory>
#include <set>

namespace sonvara {

/// To be made and destroyed on the main thread. Tasks keep their order also when one of them runs an event loop
/// of its own, as an open menu does.
class QtMainQueue final : public MainQueue {
public:
    /// Destroys the tasks that have not run and stops the timers. Nothing may post any more.
    ~QtMainQueue() override;

    void post(Task task) override;

    /// The timer is a coarse one: it may be 5 % off, which lets the system join wake-ups.
    [[nodiscard]] std::shared_ptr<RepeatingTimer> scheduleTimer(std::chrono::milliseconds interval,
                                                                Task action) override;

private:
    class Timer;

    QtSerialQueue tasks_;
    std::set<std::shared_ptr<Timer>> timers_;  // running, whoever else holds them
};

}  // namespace sonvara
