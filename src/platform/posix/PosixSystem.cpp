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
namespace {

/// A digit is `zero` with a greater last byte: the ten of every script are within one block of 64.
std::string digit(int number, std::string zero)
{
    zero.back() = static_cast<char>(zero.back() + number);
    return zero;
}

std::string twoDigits(int number, const std::string& zero)
{
    return digit(number / 10, zero) + digit(number % 10, zero);
}

}  // namespace

WallTime PosixClock::now() const
{
    return std::chrono::system_clock::now();
}

std::string PosixClock::timeText(WallTime time) const
{
    // localtime_r need not notice that the user has moved to another zone; tzset does.
    ::tzset();
    // to_time_t may round towards zero; a time before the epoch belongs to the second that it is in.
    const std::time_t seconds =
        std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(time));
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
    return twoDigits(parts.tm_hour, zeroDigit_) + ':' + twoDigits(parts.tm_min, zeroDigit_) + ':' +
           twoDigits(parts.tm_sec, zeroDigit_);
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
