// A player's own volume: reading and setting it, and how far it is lowered for the DJ.
#pragma once

#include <optional>
#include <string>

namespace sonvara {

class ScriptRunner;

/// Volumes are whole numbers from 0 (silent) to 100.
struct PlayerVolume {
    PlayerVolume() = delete;

    /// 35 % of `volume`, but never below 12: a quieter player is even turned up, so that the way back is
    /// the same for all.
    [[nodiscard]] static int ducked(int volume);

    /// Worker threads, blocking: the player's volume, or nothing when it cannot be read.
    [[nodiscard]] static std::optional<int> read(ScriptRunner& scripts, const std::string& source);
    /// Worker threads, blocking: sets the volume, clamped to 0 to 100. A failure is not reported.
    static void set(ScriptRunner& scripts, const std::string& source, int volume);
};

}  // namespace sonvara
