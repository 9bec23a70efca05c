#include "platform/posix/PosixClock.h"

#include <ctime>

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

}  // namespace sonvara
