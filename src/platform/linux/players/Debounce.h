// Tells a player's real changes from the moments between two tracks.
#pragma once

#include "platform/linux/players/PlayerState.h"

#include <chrono>
#include <optional>

namespace sonvara {

using Time = std::chrono::steady_clock::time_point;

/// Follows what one player says, and keeps the latest snapshot of it that may be told: no half-described
/// track, and no stop or pause that only lasts from one track to the next.
///
/// Time comes from the caller and never runs backwards. No thread of its own, no failure.
class Debounce {
public:
    /// How long a stop, or an incomplete track, is held back for what may follow.
    static constexpr std::chrono::milliseconds delay{300};
    /// How long a pause is: half of that, because its user waits for the voice to end and for the volume. Where players
    /// have a gap between two tracks for longer, they tell of a stop.
    static constexpr std::chrono::milliseconds pauseDelay{150};
    /// How long all is held back from a player that names one incomplete track after the other.
    static constexpr std::chrono::milliseconds longestDelay{1000};

    /// Takes in what the player says now. A complete track that plays counts at once. What may be half a
    /// change is held back until it is completed, undone or overdue.
    void observe(const PlayerState& said, Time now);

    /// Accepts what has been held back for long enough.
    void expire(Time now);

    /// When `expire` is due, if anything is held back.
    [[nodiscard]] std::optional<Time> deadline() const;

    /// The latest accepted snapshot; `PlayerSnapshot{}` before the first.
    [[nodiscard]] const PlayerSnapshot& snapshot() const { return snapshot_; }

private:
    struct HeldBack {
        PlayerState said;
        Time due;
        Time latest;
    };

    [[nodiscard]] bool isCertain(const PlayerState& said) const;
    [[nodiscard]] std::chrono::milliseconds delayOf(const PlayerState& said) const;
    void accept(PlayerSnapshot snapshot);
    void holdBack(const PlayerState& said, Time now);

    PlayerSnapshot snapshot_;
    std::optional<HeldBack> heldBack_;
};

}  // namespace sonvara
