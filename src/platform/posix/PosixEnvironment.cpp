#include "platform/posix/PosixEnvironment.h"

#include <string_view>
#include <unistd.h>

extern char** environ;  // not declared by every system's headers

namespace sonvara {

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

}  // namespace sonvara
