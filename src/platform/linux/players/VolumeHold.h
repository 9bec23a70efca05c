// Notices a player that takes back the volume to which it was set.
#pragma once

#include "platform/linux/players/Settler.h"

#include <chrono>
#include <optional>
#include <string>

namespace sonvara::players {

/// A player that begins a track may undo what it was told in that moment: the stream that it opens
/// brings along the volume from before, and the player takes that for its own. So it is told once
/// more when it goes back within a second. A volume that somebody moves elsewhere is left alone.
///
/// Volumes are 0 to 100, owners are connections on the bus. Time comes from the caller. No thread
/// of its own, no failure.
class VolumeHold {
public:
    /// How long after a command a player may still undo it.
    static constexpr std::chrono::milliseconds limit{1000};
    /// How often a player is told once more.
    static constexpr int patience = 3;

    /// The player has told its volume when it was asked.
    void learn(const std::string& owner, int volume);
    /// The player is being set to `volume`.
    void set(const std::string& owner, int volume, Time now);
    /// Whether what the player says by itself matters now.
    [[nodiscard]] bool isOpen(const std::string& owner, Time now) const;
    /// The player says by itself that its volume is `volume` now. Gives the volume to set once more,
    /// if it has gone back to the one from before the command.
    [[nodiscard]] std::optional<int> hear(const std::string& owner, int volume, Time now);

private:
    std::string owner_;
    int volume_ = 0;             // the last one that was told or set
    std::optional<int> before_;  // what it was when it was set
    Time until_;
    int repeats_ = 0;
};

}  // namespace sonvara::players
