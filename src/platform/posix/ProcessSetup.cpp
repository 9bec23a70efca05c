#include "platform/posix/ProcessSetup.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace sonvara {

namespace {

// A tool that inherits a terminal or an open pipe waits for input or takes it for a part of its prompt.
void detachStandardInput()
{
    ::close(STDIN_FILENO);
    ::open("/dev/null", O_RDONLY);  // gets the lowest free number
}

// Else the next file that is opened would get the number, and with it what is meant for the reader.
void openMissing(int number, int mode)
{
    if (::fcntl(number, F_GETFD) == -1) ::open("/dev/null", mode);
}

void resetSignals()
{
    // Whoever started us may have ignored it; then the system would not keep the status of children.
    std::signal(SIGCHLD, SIG_DFL);
    // A speech daemon that dies must not take us along through its socket, nor a closed terminal.
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace

void setUpProcess()
{
    detachStandardInput();
    openMissing(STDOUT_FILENO, O_WRONLY);
    openMissing(STDERR_FILENO, O_WRONLY);
    resetSignals();
    constexpr int keep = 0;  // a value that the user has chosen stays
    ::setenv("NO_BROWSER", "true", keep);
    ::setenv("GEMINI_CLI_NO_RELAUNCH", "true", keep);
}

}  // namespace sonvara
