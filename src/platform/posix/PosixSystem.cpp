#include "platform/posix/PosixSystem.h"

#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

extern char** environ;  // not declared by every system's headers

namespace sonvara {

WallTime PosixClock::now() const
{
    return std::chrono::system_clock::now();
}

TimeOfDay PosixClock::local(WallTime time) const
{
    // localtime_r need not notice that the user has moved to another zone; tzset does.
    ::tzset();
    // to_time_t may round towards zero; a time before the epoch belongs to the second that it is in.
    const std::time_t seconds =
        std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(time));
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
    return {parts.tm_hour, parts.tm_min, parts.tm_sec};
}

Variables PosixEnvironment::variables() const
{
    Variables result;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        const auto equals = text.find('=');
        if (equals == std::string_view::npos) continue;
        result.emplace(text.substr(0, equals),
                       text.substr(equals + 1));  // the first one counts, as in getenv
    }
    return result;
}

bool PosixFileManager::isExecutableFile(const std::string& path) const
{
    struct stat status{};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
    return ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

bool PosixFileManager::createDirectory(const std::string& path)
{
    std::error_code error;
    std::filesystem::create_directories(path, error);
    return std::filesystem::is_directory(path, error);
}

}  // namespace sonvara
