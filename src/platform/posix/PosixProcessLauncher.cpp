#include "platform/posix/PosixProcessLauncher.h"

#include "platform/posix/PosixChildProcess.h"

#include <utility>

namespace sonvara {

std::shared_ptr<ChildProcess> PosixProcessLauncher::make(ChildProcessSetup setup)
{
    auto child = std::make_shared<PosixChildProcess>(std::move(setup));
    const std::lock_guard lock(mutex_);
    std::erase_if(children_, [](const auto& entry) { return entry.expired(); });
    children_.push_back(child);
    if (isOver_) child->forbid();
    return child;
}

void PosixProcessLauncher::terminateAll()
{
    const std::lock_guard lock(mutex_);
    isOver_ = true;
    for (const auto& entry : children_)
        if (const auto child = entry.lock()) child->forbid();
}

}  // namespace sonvara
