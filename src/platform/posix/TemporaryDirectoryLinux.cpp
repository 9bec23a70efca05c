// The AI tools read settings in their working folder and in all folders above it, so none of those may be one
// in which somebody else could put such a file.
#include "platform/posix/PosixSystem.h"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace sonvara {

namespace {

namespace fs = std::filesystem;

constexpr mode_t ownersOnly = S_IRWXU;

// The absolute path that a variable of the environment holds.
std::optional<fs::path> pathIn(const char* variable)
{
    const char* const value = std::getenv(variable);
    if (value == nullptr || *value != '/') return std::nullopt;
    return value;
}

std::optional<struct stat> statusOfFolder(const fs::path& folder)
{
    struct stat status{};
    if (::lstat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return std::nullopt;
    return status;
}

// Whether the folder is the user's or the system's, and gives nobody else these rights. The system's are those
// of whoever owns the root folder: a user namespace shows another number there than root's.
bool denies(const fs::path& folder, mode_t rights)
{
    const auto status = statusOfFolder(folder);
    const auto root = statusOfFolder("/");
    if (!status || !root) return false;
    const bool isTrusted = status->st_uid == ::geteuid() || status->st_uid == root->st_uid;
    return isTrusted && (status->st_mode & rights) == 0;
}

// The folder's own path, without links, if nobody else can enter it, so that no umask opens what is made in
// it, or write to one above it.
std::optional<std::string> ownFolder(const fs::path& path)
{
    std::error_code error;
    const auto folder = fs::canonical(path, error);
    if (error || ::access(folder.c_str(), W_OK) != 0 || !denies(folder, S_IRWXG | S_IRWXO))
        return std::nullopt;
    for (auto each = folder; denies(each, S_IWGRP | S_IWOTH); each = each.parent_path())
        if (each == each.root_path()) return folder.string();
    return std::nullopt;
}

std::optional<std::string> cacheFolder()
{
    auto cache = pathIn("XDG_CACHE_HOME");
    if (const auto home = pathIn("HOME"); !cache && home) cache = *home / ".cache";
    if (!cache) return std::nullopt;
    const auto folder = *cache / "sonvara";
    std::error_code ignored;  // what could not be made is missed below
    fs::create_directories(cache->parent_path(), ignored);
    ::mkdir(cache->c_str(), ownersOnly);
    if (::mkdir(folder.c_str(), ownersOnly) != 0) ::chmod(folder.c_str(), ownersOnly);
    return ownFolder(folder);
}

}  // namespace

std::string PosixFileManager::temporaryDirectory() const
{
    const auto runtime = pathIn("XDG_RUNTIME_DIR");
    auto folder = runtime ? ownFolder(*runtime) : std::nullopt;
    if (!folder) folder = cacheFolder();
    return folder.value_or("/dev/null");  // in which nothing can be made, so no tool is launched
}

}  // namespace sonvara
