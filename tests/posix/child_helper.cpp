// A program for the tests to run as a child. Its first argument says what it does.
#include <array>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <unistd.h>

extern char** environ;

namespace {

void put(std::string_view bytes)
{
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

int printArguments(int argc, char** argv)
{
    for (int i = 2; i < argc; ++i) put(std::string(argv[i]) + '\0');
    return 0;
}

int printEnvironment()
{
    for (char** entry = environ; *entry != nullptr; ++entry) put(std::string(*entry) + '\0');
    return 0;
}

int printFolder()
{
    std::array<char, PATH_MAX> path{};
    if (::getcwd(path.data(), path.size()) == nullptr) return 1;
    put(path.data());
    return 0;
}

int printInput()
{
    std::array<char, 4096> buffer;
    std::size_t count = 0;
    while ((count = std::fread(buffer.data(), 1, buffer.size(), stdin)) > 0) put({buffer.data(), count});
    return 0;
}

// The open descriptors, by asking for each possible number, so that nothing needs to be opened.
int printDescriptors()
{
    for (int number = 0; number < 4096; ++number)
        if (::fcntl(number, F_GETFD) != -1) put(std::to_string(number) + ' ');
    return 0;
}

// The signals that are ignored or blocked.
int printSignals()
{
    sigset_t mask;
    sigprocmask(SIG_SETMASK, nullptr, &mask);
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action{};
        if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN)
            put("ignored " + std::to_string(number) + ' ');
        if (sigismember(&mask, number) == 1) put("blocked " + std::to_string(number) + ' ');
    }
    return 0;
}

int printMuch(int megabytes)
{
    const std::string block(1 << 20, '\xFF');
    for (int i = 0; i < megabytes; ++i) {
        std::fwrite(block.data(), 1, block.size(), stderr);
        put(block);
    }
    return 0;
}

int printWithoutEnd()
{
    const std::string block(1 << 20, 'x');
    while (std::fwrite(block.data(), 1, block.size(), stdout) == block.size()) {
    }
    return 0;
}

[[noreturn]] void sleepMinutes()
{
    while (true) ::sleep(60);
}

// As a tool that has a handler of its own: it ends well, with what it has.
[[noreturn]] void sleepUntilTerminate()
{
    std::signal(SIGTERM, [](int) {
        constexpr std::string_view half = "half a sentence";
        ::_exit(::write(STDOUT_FILENO, half.data(), half.size()) < 0 ? 1 : 0);
    });
    ::close(::open("ready", O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    sleepMinutes();
}

// Writes its number into the file and stays.
[[noreturn]] void sleepAfterNumber(const char* path)
{
    if (std::FILE* const file = std::fopen(path, "w")) {
        std::fprintf(file, "%d\n", static_cast<int>(::getpid()));
        std::fclose(file);
    }
    sleepMinutes();
}

[[noreturn]] void sleepThroughTerminate()
{
    std::signal(SIGTERM, SIG_IGN);
    put(std::to_string(::getpid()));
    std::fclose(stdout);
    sleepMinutes();
}

// Prints the number of a process that it leaves behind, which keeps the output open.
int leaveGrandchild()
{
    const pid_t pid = ::fork();
    if (pid != 0) {
        put(std::to_string(pid));
        return 7;
    }
    sleepMinutes();
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string_view what = argc > 1 ? argv[1] : "";
    if (what == "arguments") return printArguments(argc, argv);
    if (what == "environment") return printEnvironment();
    if (what == "folder") return printFolder();
    if (what == "input") return printInput();
    if (what == "descriptors") return printDescriptors();
    if (what == "signals") return printSignals();
    if (what == "much") return printMuch(std::atoi(argv[2]));
    if (what == "endless") return printWithoutEnd();
    if (what == "exit") return std::atoi(argv[2]);
    if (what == "signal") return std::raise(std::atoi(argv[2]));
    if (what == "sleep") sleepMinutes();
    if (what == "obliging") sleepUntilTerminate();
    if (what == "number") sleepAfterNumber(argv[2]);
    if (what == "stubborn") sleepThroughTerminate();
    if (what == "orphan") return leaveGrandchild();
    return 99;
}
