#include "platform/posix/PosixChildProcess.h"

#include "platform/posix/Descriptors.h"
#include "platform/posix/Spawn.h"
#include "platform/posix/Uninterrupted.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>

namespace sonvara {

namespace {

using SteadyClock = std::chrono::steady_clock;

using namespace std::chrono_literals;

constexpr auto outputGrace = 2s;
constexpr auto lookInterval = 200ms;
constexpr std::size_t outputLimit = std::size_t{64} << 20;

// Whether the child has ended; it stays a zombie, so that its number stays its own.
bool waitWithoutReaping(pid_t pid, int options)
{
    siginfo_t info{};
    const int result = uninterrupted(
        [&] { return ::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT | options); });
    return result != 0 || info.si_pid != 0;
}

int statusOf(int signal)
{
    return 128 + signal;
}

int reap(pid_t pid, bool wasAskedToEnd)
{
    int status = 0;
    if (uninterrupted([&] { return ::waitpid(pid, &status, 0); }) != pid) return 255;  // reaped by others
    if (WIFSIGNALED(status)) return statusOf(WTERMSIG(status));
    // A tool with a handler of its own may end well, with half an answer.
    return wasAskedToEnd ? statusOf(SIGTERM) : WEXITSTATUS(status);
}

}  // namespace

PosixChildProcess::PosixChildProcess(ChildProcessSetup setup) : setup_(std::move(setup)) {}

PosixChildProcess::~PosixChildProcess()
{
    if (!pid_ || ::waitpid(*pid_, nullptr, WNOHANG) != 0)
        return;  // it has ended, and is given back to the system
    try {
        std::thread([pid = *pid_] { uninterrupted([&] { return ::waitpid(pid, nullptr, 0); }); }).detach();
    } catch (const std::system_error&) {
        // No thread to be had: the system reaps the child when this process ends.
    }
}

std::optional<std::string> PosixChildProcess::launch()
{
    const int error = spawn();
    if (error == 0) return std::nullopt;
    return std::generic_category().message(error);
}

int PosixChildProcess::spawn()
{
    PipeEnds pipe;
    if (const int error = makePipe(pipe)) return error;

    const std::lock_guard lock(mutex_);
    if (isForbidden_) return ECANCELED;
    pid_t pid{};
    if (const int error = spawnProgram(setup_, pipe.writing.get(), pid)) return error;
    pid_ = pid;
    output_ = std::move(pipe.reading);
    return 0;
}

std::string PosixChildProcess::readOutputToEnd()
{
    std::string output;
    std::array<char, 65536> buffer;
    bool isFull = false;
    std::optional<SteadyClock::time_point> deadline;  // set once the program has ended
    while (true) {
        const bool isLate = deadline && SteadyClock::now() >= *deadline;
        const bool isReadable = waitForOutput(isLate ? 0ms : lookInterval);
        if (isLate && (!isReadable || isFull)) break;
        if (isReadable) {
            const auto count =
                uninterrupted([&] { return ::read(output_.get(), buffer.data(), buffer.size()); });
            if (count <= 0) break;
            if (!isFull) isFull = !append(output, buffer.data(), static_cast<std::size_t>(count));
        }
        if (!deadline && !isRunning()) deadline = SteadyClock::now() + outputGrace;
    }
    output_.reset();
    return output;
}

bool PosixChildProcess::waitForOutput(std::chrono::milliseconds limit) const
{
    pollfd waiting{output_.get(), POLLIN, 0};
    return ::poll(&waiting, 1, static_cast<int>(limit.count())) > 0;
}

bool PosixChildProcess::append(std::string& output, const char* bytes, std::size_t count)
{
    if (output.size() + count > outputLimit) {
        terminate();
        return false;
    }
    output.append(bytes, count);
    return true;
}

int PosixChildProcess::waitUntilExit()
{
    std::unique_lock lock(mutex_);
    if (!pid_) return status_;
    const pid_t pid = *pid_;
    lock.unlock();  // the wait must not keep others from asking the program to end
    waitWithoutReaping(pid, 0);
    lock.lock();
    if (pid_) status_ = reap(pid, wasAskedToEnd_);
    pid_.reset();
    return status_;
}

bool PosixChildProcess::isRunning() const
{
    const std::lock_guard lock(mutex_);
    return pid_ && !waitWithoutReaping(*pid_, WNOHANG);
}

void PosixChildProcess::terminate()
{
    const std::lock_guard lock(mutex_);
    if (!pid_) return;
    wasAskedToEnd_ = wasAskedToEnd_ || !waitWithoutReaping(*pid_, WNOHANG);
    // The whole session's first group, and what of it a program that has ended left behind.
    ::kill(-*pid_, SIGTERM);
}

void PosixChildProcess::forbid()
{
    {
        const std::lock_guard lock(mutex_);
        isForbidden_ = true;
    }
    terminate();
}

}  // namespace sonvara
