#include "platform/posix/Spawn.h"

#include "platform/posix/Descriptors.h"
#include "platform/posix/SpawnedProgram.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <vector>

namespace sonvara {

namespace {

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

}  // namespace

int spawnProgram(const ChildProcessSetup& setup, int output, pid_t& pid)
{
    const FileDescriptor folder(
        ::open(setup.directory.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (folder.get() == -1) return errno;
    auto arguments = argumentList(setup);
    auto environment = environmentList(setup.environment);
    return spawn({setup.executable.c_str(), pointers(arguments).data(), pointers(environment).data(),
                  folder.get(), output},
                 pid);
}

}  // namespace sonvara
