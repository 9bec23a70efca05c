// One observation of one player, and how it is read from what the players report.
#pragma once

#include "ports/NotificationCenter.h"
#include "support/PlayerScripts.h"

#include <cstddef>
#include <optional>
#include <string>

namespace sonvara {

/// What one player said about its current track. Absent where a source had nothing usable to say.
struct NowPlaying {
    std::string name;  ///< title; may be empty, as are artist and album
    std::string artist;
    std::string album;
    bool isPlaying = false;
    bool favorited = false;
    std::string source;  ///< the player: "Music" or "Spotify"
};

/// Reads a player's notification. A value of an unexpected type counts as missing. Absent when there is
/// no title, unless the player says that it has stopped: then the record has only its source.
[[nodiscard]] std::optional<NowPlaying> parseEvent(const Notification& notification);

/// Reads a poll script's answer, as `poll::read` does.
[[nodiscard]] std::optional<NowPlaying> parsePollOutput(const std::string& source, const std::string& output,
                                                        std::size_t fields);

/// Chooses among two poll results and the last notification: a playing player before a paused one,
/// Music before Spotify, the fallback only when neither poll gave anything.
[[nodiscard]] std::optional<NowPlaying> pick(const std::optional<NowPlaying>& music,
                                             const std::optional<NowPlaying>& spotify,
                                             const std::optional<NowPlaying>& fallback);

}  // namespace sonvara
