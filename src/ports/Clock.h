// Port: wall-clock time.
#pragma once

#include <chrono>

namespace sonvara {

using WallTime = std::chrono::system_clock::time_point;

/// Hours (0 to 23), minutes and seconds of a day in the user's time zone.
struct TimeOfDay {
    int hour = 0;
    int minute = 0;
    int second = 0;
};

/// Reads the wall clock. Any thread; never fails.
class Clock {
public:
    virtual ~Clock() = default;
    [[nodiscard]] virtual WallTime now() const = 0;

    /// `time` in the time zone that is current at the call.
    [[nodiscard]] virtual TimeOfDay local(WallTime time) const = 0;
};

}  // namespace sonvara
