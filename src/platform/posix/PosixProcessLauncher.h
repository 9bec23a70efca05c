// Makes child processes and knows which ones are still running.
#pragma once

#include "ports/ChildProcess.h"

#include <memory>
#include <mutex>
#include <vector>

namespace sonvara {

class PosixChildProcess;

class PosixProcessLauncher final : public ProcessLauncher {
public:
    [[nodiscard]] std::shared_ptr<ChildProcess> make(ChildProcessSetup setup) override;

    /// Any thread: asks every running child politely to end; any other one can no longer be launched.
    /// For the end of the program, so that no child works on for nobody.
    void terminateAll();

private:
    std::mutex mutex_;  // guards what follows
    std::vector<std::weak_ptr<PosixChildProcess>> children_;
    bool isOver_ = false;
};

}  // namespace sonvara
