// Tells a player's real changes from the moments between two tracks.
#pragma once

#include "platform/linux/players/PlayerState.h"

#include <chrono>
#include <optional>

namespace sonvara {

using Time = std::chrono::steady_clock::time_point;

/// Follows what one player says and keeps the latest picture of it that is fit to be told: no
/// half-filled track, and no stop or pause that only lasts from one track to the next.
///
/// Time comes from the caller and never runs backwards. No thread of its own, no failure.
class Settler {
public:
    /// How long a stop, or a track that lacks words, waits for what may follow.
    static constexpr std::chrono::milliseconds patience{300};
    /// How long a player that names one unfinished track after the other may be silent in all.
    static constexpr std::chrono::milliseconds greatestPatience{1000};

    /// Takes in what the player says now. A complete track that plays is told at once; what may be
    /// half a change is kept back until it is completed, undone or overdue.
    void observe(const PlayerState& said, Time now);

    /// Accepts what has waited long enough.
    void expire(Time now);

    /// When `expire` should be called, if anything waits.
    [[nodiscard]] std::optional<Time> deadline() const;

    /// The latest settled picture; `Picture{}` before the first.
    [[nodiscard]] const Picture& picture() const { return picture_; }
    /// Whether the picture is the player's own and not only the initial one.
    [[nodiscard]] bool hasSettled() const { return hasSettled_; }

private:
    struct Waiting {
        PlayerState said;
        Time due;
        Time latest;
    };

    [[nodiscard]] bool isCertain(const PlayerState& said) const;
    void settle(Picture picture);
    void wait(const PlayerState& said, Time now);

    Picture picture_;
    bool hasSettled_ = false;
    std::optional<Waiting> waiting_;
};

}  // namespace sonvara
