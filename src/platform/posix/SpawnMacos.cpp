// By posix_spawn: the system has no way to tell a program of our end, so nothing has to be done in the child
// by hand.
#include "platform/posix/SpawnedProgram.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace sonvara {

namespace {

class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
    posix_spawn_file_actions_t& get() { return actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

class Attributes {
public:
    Attributes() { posix_spawnattr_init(&attributes_); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { posix_spawnattr_destroy(&attributes_); }
    posix_spawnattr_t& get() { return attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

// What the child does before it becomes the program; the first step that fails is the launch's error. That all
// other descriptors are closed is a flag, which keeps standard input from being passed on by itself.
int arrange(posix_spawn_file_actions_t& actions, const SpawnedProgram& program)
{
    if (const int error = posix_spawn_file_actions_addinherit_np(&actions, STDIN_FILENO)) return error;
    if (const int error = posix_spawn_file_actions_addfchdir_np(&actions, program.folder)) return error;
    if (const int error = posix_spawn_file_actions_adddup2(&actions, program.output, STDOUT_FILENO))
        return error;
    // A pipe that nobody reads would stop a talkative program, this does not.
    return posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
}

void giveDefaultSignals(posix_spawnattr_t& attributes)
{
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setsigmask(&attributes, &none);
}

}  // namespace

int spawn(const SpawnedProgram& program, pid_t& pid)
{
    FileActions actions;
    if (const int error = arrange(actions.get(), program)) return error;

    Attributes attributes;
    giveDefaultSignals(attributes.get());
    constexpr int flags =
        POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_CLOEXEC_DEFAULT;
    if (const int error = posix_spawnattr_setflags(&attributes.get(), static_cast<short>(flags)))
        return error;
    return ::posix_spawn(&pid, program.path, &actions.get(), &attributes.get(), program.arguments,
                         program.environment);
}

}  // namespace sonvara
