// Port: running another program.
#pragma once

#include "ports/System.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sonvara {

/// Which program to run, and how.
struct ChildProcessSetup {
    std::string executable;              ///< absolute path; no search, no shell
    std::vector<std::string> arguments;  ///< without the program's own name
    std::string directory;               ///< working folder
    Variables environment;               ///< the child's whole environment
};

/// One run of a program. It inherits standard input; its standard output is a pipe to us, its standard
/// error is thrown away; no other descriptor of ours is open in it. A working folder that is a link is
/// refused. Destroying the object after a launch without `waitUntilExit` leaves no zombie behind.
class ChildProcess {
public:
    virtual ~ChildProcess() = default;

    /// Worker threads, once: starts the program. Returns the system's reason when that fails. The thread
    /// is to stay until the program has ended, since a program may be asked to end with the thread that
    /// launched it: so none works on for nobody after a crash.
    [[nodiscard]] virtual std::optional<std::string> launch() = 0;

    /// After a successful launch, once: blocks until the program's output is closed, and returns all
    /// of it, whatever bytes it holds.
    [[nodiscard]] virtual std::string readOutputToEnd() = 0;

    /// After a successful launch, on the same thread: blocks until the program has ended. Returns its
    /// exit status, or 128 plus the number of the signal that ended it. One that ends because it was
    /// asked to counts as ended by the signal (143), whatever status it gives.
    [[nodiscard]] virtual int waitUntilExit() = 0;

    /// Any thread: whether the program was launched and has not ended.
    [[nodiscard]] virtual bool isRunning() const = 0;

    /// Any thread: asks the program politely to end. Does nothing when it is not running.
    virtual void terminate() = 0;
};

/// Makes child processes. Any thread.
class ProcessLauncher {
public:
    virtual ~ProcessLauncher() = default;
    [[nodiscard]] virtual std::shared_ptr<ChildProcess> make(ChildProcessSetup setup) = 0;
};

}  // namespace sonvara
