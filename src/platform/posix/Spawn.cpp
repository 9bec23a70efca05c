#include "platform/posix/Spawn.h"

#include "platform/posix/Descriptors.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>

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

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (auto& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

std::vector<std::string> argumentList(const ChildProcessSetup& setup)
{
    std::vector<std::string> list{setup.executable};
    list.insert(list.end(), setup.arguments.begin(), setup.arguments.end());
    return list;
}

std::vector<std::string> environmentList(const Variables& variables)
{
    std::vector<std::string> list;
    for (const auto& [name, value] : variables) list.emplace_back(name).append("=").append(value);
    return list;
}

// What the child does before it becomes the program; the first step that fails is the launch's error.
int arrange(posix_spawn_file_actions_t& actions, const ChildProcessSetup& setup, int output, int& flags)
{
    if (const int error = posix_spawn_file_actions_addchdir_np(&actions, setup.directory.c_str()))
        return error;
    if (const int error = posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO)) return error;
    // A pipe that nobody reads would stop a talkative program, this does not.
    if (const int error = posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0))
        return error;
    return closeOtherDescriptors(actions, flags);
}

void resetSignals(posix_spawnattr_t& attributes)
{
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setsigmask(&attributes, &none);
}

}  // namespace

int spawnProgram(const ChildProcessSetup& setup, int output, pid_t& pid)
{
    FileActions actions;
    int flags = POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
    if (const int error = arrange(actions.get(), setup, output, flags)) return error;

    Attributes attributes;
    resetSignals(attributes.get());
    if (const int error = posix_spawnattr_setflags(&attributes.get(), static_cast<short>(flags)))
        return error;

    auto arguments = argumentList(setup);
    auto environment = environmentList(setup.environment);
    return ::posix_spawn(&pid, setup.executable.c_str(), &actions.get(), &attributes.get(),
                         pointers(arguments).data(), pointers(environment).data());
}

}  // namespace sonvara
