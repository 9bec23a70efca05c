#include "platform/posix/PosixFileManager.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace sonvara {

bool PosixFileManager::isExecutableFile(const std::string& path) const
{
    struct stat status{};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
    return ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

std::string PosixFileManager::temporaryDirectory() const
{
    const char* const variable = std::getenv("TMPDIR");
    std::string path = variable != nullptr && *variable == '/' ? variable : "/tmp";
    while (!path.empty() && path.back() == '/') path.pop_back();
    return path;
}

bool PosixFileManager::createDirectory(const std::string& path)
{
    std::error_code error;
    std::filesystem::create_directories(path, error);
    return std::filesystem::is_directory(path, error);
}

}  // namespace sonvara
