// Background work on the global dispatch queues.
#pragma once

#include "ports/Queues.h"

namespace sonvara {

/// The system adds a worker for each one that blocks, up to about 64 of them; further tasks wait.
class DispatchGlobalQueue final : public GlobalQueue {
public:
    void post(QualityOfService quality, Task task) override;
    std::shared_ptr<DelayedTask> postAfter(QualityOfService quality, std::chrono::milliseconds delay,
                                           Task task) override;
};

}  // namespace sonvara
