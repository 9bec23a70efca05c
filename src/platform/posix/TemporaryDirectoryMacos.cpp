#include "platform/posix/PosixSystem.h"

#include <array>
#include <climits>
#include <string>
#include <unistd.h>

namespace sonvara {

// Each user has one, which the system makes at login; /dev/null is a folder for nobody.
std::string PosixFileManager::temporaryDirectory() const
{
    std::array<char, PATH_MAX> path{};
    const auto size = ::confstr(_CS_DARWIN_USER_TEMP_DIR, path.data(), path.size());
    if (size == 0 || size > path.size()) return "/dev/null";
    std::string directory(path.data());
    while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
    return directory;
}

}  // namespace sonvara
