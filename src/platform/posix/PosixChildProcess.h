// Child processes.
#pragma once

#include "platform/posix/Descriptors.h"
#include "ports/ChildProcess.h"

#include <chrono>
#include <cstddef>
#include <mutex>
#include <sys/types.h>

namespace sonvara {

/// One run of a program, in a session of its own: it has no terminal to ask questions on, and the
/// processes that it starts can be asked to end together with it. Signals are at their defaults in
/// it. On Linux it is asked to end, too, when this process is killed.
///
/// Two things keep a reader from being at the program's mercy. Processes that the program leaves
/// behind may hold its output open: it counts as closed two seconds after the program's own end.
/// Output beyond 64 MiB is dropped, and the program is asked to end.
class PosixChildProcess final : public ChildProcess {
public:
    explicit PosixChildProcess(ChildProcessSetup setup);
    PosixChildProcess(const PosixChildProcess&) = delete;
    PosixChildProcess& operator=(const PosixChildProcess&) = delete;
    ~PosixChildProcess() override;

    [[nodiscard]] std::optional<std::string> launch() override;
    [[nodiscard]] std::string readOutputToEnd() override;
    [[nodiscard]] int waitUntilExit() override;
    [[nodiscard]] bool isRunning() const override;
    void terminate() override;

    /// Any thread: as `terminate`, but a program that has not been launched yet fails to be.
    void forbid();

private:
    int spawn();
    [[nodiscard]] bool waitForOutput(std::chrono::milliseconds limit) const;
    bool append(std::string& output, const char* bytes, std::size_t count);

    const ChildProcessSetup setup_;
    FileDescriptor output_;
    mutable std::mutex mutex_;  // guards what follows
    bool isForbidden_ = false;
    bool wasAskedToEnd_ = false;
    std::optional<pid_t> pid_;  // absent once reaped: the number may then be another process's
    int status_ = 0;            // of the reaped program
};

}  // namespace sonvara
