// Work in order on a thread of its own.
#pragma once

#include "ports/Queues.h"

#include <string>

struct dispatch_queue_s;

namespace sonvara {

/// A serial dispatch queue: the system gives each one that has work a thread beyond those of the global queues, so a
/// task that blocks takes none of their workers.
class DispatchSerialQueue {
public:
    explicit DispatchSerialQueue(const std::string& label);
    DispatchSerialQueue(const DispatchSerialQueue&) = delete;
    DispatchSerialQueue& operator=(const DispatchSerialQueue&) = delete;
    /// What was posted is still run.
    ~DispatchSerialQueue();

    /// Any thread; returns at once.
    void post(Task task);

private:
    dispatch_queue_s* queue_;
};

}  // namespace sonvara
