// What a player says of itself, and what of that is told to the system; plain values.
#pragma once

#include <optional>
#include <string>

namespace sonvara {

enum class PlaybackStatus { playing, paused, stopped };

/// A player's current track. All texts are valid UTF-8 and may be empty or long.
struct Track {
    std::string title;
    std::string artist;  ///< several artists are joined by ", "
    std::string album;
    bool loved = false;
    std::string id;   ///< the player's own name for the track; some players have one name for all of them
    std::string url;  ///< where the track lies
    bool hasLength = false;  ///< it is known how long it is

    friend bool operator==(const Track&, const Track&) = default;
};

/// The latest that a player said.
struct PlayerState {
    PlaybackStatus status = PlaybackStatus::stopped;
    Track track;

    friend bool operator==(const PlayerState&, const PlayerState&) = default;
};

/// A message of a player. What it does not name stays as it is.
struct StateChange {
    std::optional<PlaybackStatus> status;
    std::optional<Track> track;
};

/// What the system is told of a player. Without a track it is exactly `PlayerSnapshot{}`.
struct PlayerSnapshot {
    PlaybackStatus status = PlaybackStatus::stopped;
    std::string title;
    std::string artist;
    std::string album;
    bool loved = false;

    [[nodiscard]] bool hasTrack() const { return !title.empty(); }
    friend bool operator==(const PlayerSnapshot&, const PlayerSnapshot&) = default;
};

/// Takes `change` into `state`. A stopped player's track is forgotten: players go on naming the old one until
/// they name the next.
void merge(PlayerState& state, StateChange change);

/// Whether both states name the same track, whatever else they say of it.
[[nodiscard]] bool isSameTrack(const PlayerState& a, const PlayerState& b);

/// Whether the track is an advertisement.
[[nodiscard]] bool isAdvertisement(const Track& track);

/// Whether the track's description is complete. Players that have not read a file's tags yet show its name
/// and no artist.
[[nodiscard]] bool isComplete(const Track& track);

/// A stopped player, an advertisement and a track without a title are told as no track, and any other one `tidied`.
[[nodiscard]] PlayerSnapshot snapshotOf(const PlayerState& state);

}  // namespace sonvara
