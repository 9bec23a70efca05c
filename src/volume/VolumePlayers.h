// The players whose volumes are read and set: what the platform does for `LoweredPlayers`.
#pragma once

#include "volume/LoweredPlayer.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace sonvara {

/// One run of a player's program, or one connection of it; never used again for another one. 0 is none.
using PlayerRun = std::uint64_t;

/// Main thread; nothing blocks. What is asked of a player reaches it behind all that it was told before.
class VolumePlayers {
public:
    /// What was told; nothing if there is no answer, or one without a volume.
    using Answer = std::function<void(const std::optional<VolumeLook>&)>;

    virtual ~VolumePlayers() = default;

    /// The run that is meant by "Music" or "Spotify" now; 0 if there is none.
    [[nodiscard]] virtual PlayerRun meant(const std::string& player) = 0;
    /// Asks in the words of the core's command. Calls `answer` once, later, unless the program ends before.
    virtual void read(PlayerRun run, const Answer& answer) = 0;
    /// Asks in our own words, only a player that runs. Calls `answer` likewise.
    virtual void look(PlayerRun run, const Answer& answer) = 0;
    /// Tells the player its new volume. Failures are silent: the next look shows what has come of it.
    virtual void tell(PlayerRun run, double volume) = 0;
};

}  // namespace sonvara
