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

// For the AI tools, which are started with our environment.
void completeEnvironment()
{
    constexpr int keep = 0;  // a value that the user has chosen stays
    // Nobody sits before a tool that signs in.
    ::setenv("NO_BROWSER", "true", keep);
    // Its second process would outlive a request to end.
    ::setenv("GEMINI_CLI_NO_RELAUNCH", "true", keep);
    // Ten retries take longer than an intro may. Gemini offers no such limit for the models that it chooses itself.
    ::setenv("CLAUDE_CODE_MAX_RETRIES", "2", keep);
    // A title is text: "@" and a path in it attach no file, and tell the model of none.
    ::setenv("CLAUDE_CODE_DISABLE_ATTACHMENTS", "1", keep);
    ::setenv("CLAUDE_CODE_DISABLE_FILE_MENTIONS", "1", keep);
    // What the user has asked of it for other work is nothing to a DJ, and an intro is nothing to remember.
    ::setenv("CLAUDE_CODE_DISABLE_CLAUDE_MDS", "1", keep);
    ::setenv("CLAUDE_CODE_DISABLE_AUTO_MEMORY", "1", keep);
    ::setenv("CLAUDE_CODE_SKIP_PROMPT_HISTORY", "1", keep);
}

}  // namespace

void setUpProcess()
{
    detachStandardInput();
    openMissing(STDOUT_FILENO, O_WRONLY);
    openMissing(STDERR_FILENO, O_WRONLY);
    resetSignals();
    completeEnvironment();
}

}  // namespace sonvara
