// By fork and exec: posix_spawn cannot ask for the signal that comes with the parent's end.
#include "platform/posix/Descriptors.h"
#include "platform/posix/SpawnedProgram.h"
#include "platform/posix/Uninterrupted.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sonvara {

namespace {

constexpr int reportDescriptor = STDERR_FILENO + 1;

// Between fork and exec there may be locks that nobody will ever open: all that is called here is what a
// signal handler may call.
bool arrange(const SpawnedProgram& program, int report)
{
    ::setsid();
    if (::fchdir(program.folder) != 0) return false;
    if (::dup2(program.output, STDOUT_FILENO) == -1) return false;
    // A pipe that nobody reads would stop a talkative program, this does not.
    const int silence = ::open("/dev/null", O_WRONLY);
    if (silence == -1 || ::dup2(silence, STDERR_FILENO) == -1) return false;
    if (report != reportDescriptor && ::dup3(report, reportDescriptor, O_CLOEXEC) == -1) return false;
    ::closefrom(reportDescriptor + 1);
    return true;
}

void giveDefaultSignals()
{
    for (int number = 1; number < NSIG; ++number) std::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

// In the child: becomes the program, or reports why not.
[[noreturn]] void become(const SpawnedProgram& program, pid_t parent, int report)
{
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) ::_exit(EXIT_FAILURE);  // it has ended before it could be asked for
    if (arrange(program, report)) {
        report = reportDescriptor;
        giveDefaultSignals();
        ::execve(program.path, program.arguments, program.environment);
    }
    const int error = errno;
    [[maybe_unused]] const auto count = ::write(report, &error, sizeof error);
    ::_exit(EXIT_FAILURE);
}

// With all signals blocked: else a handler of ours could run in the child.
pid_t forkQuietly(const SpawnedProgram& program, int report)
{
    const pid_t parent = ::getpid();
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t child = ::fork();
    if (child == 0) become(program, parent, report);
    const int error = errno;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return child;
}

}  // namespace

int spawn(const SpawnedProgram& program, pid_t& pid)
{
    PipeEnds report;
    if (const int error = makePipe(report)) return error;
    const pid_t child = forkQuietly(program, report.writing.get());
    if (child == -1) return errno;
    report.writing.reset();
    int error = 0;
    const auto count = uninterrupted([&] { return ::read(report.reading.get(), &error, sizeof error); });
    if (count == 0) {  // closed by becoming the program
        pid = child;
        return 0;
    }
    uninterrupted([&] { return ::waitpid(child, nullptr, 0); });
    return error;
}

}  // namespace sonvara
