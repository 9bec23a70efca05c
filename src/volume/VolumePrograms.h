// The programs whose volume is changed, by a name under which they are found again.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace sonvara {

/// Whether a player that tells one volume may have been set to the other, 0 to 100: players round.
inline bool isAbout(int volume, int other)
{
    constexpr int tolerance = 2;
    return std::abs(volume - other) <= tolerance;
}

/// Reads and sets the volume of particular programs. Worker threads, and the main thread when the event
/// loop has ended; calls block, but only shortly.
class VolumePrograms {
public:
    virtual ~VolumePrograms() = default;

    /// The program whose volume the scripts for `player` have last read, if they have read any.
    [[nodiscard]] virtual std::optional<std::string> programOf(const std::string& player) = 0;
    /// The program's volume, 0 to 100; nothing when it does not run or does not tell.
    [[nodiscard]] virtual std::optional<int> volume(const std::string& program) = 0;
    /// Whether the program took the volume. Never starts a program that does not run.
    virtual bool setVolume(const std::string& program, int volume) = 0;
};

}  // namespace sonvara
