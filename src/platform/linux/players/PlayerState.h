// What a player says of itself, and what of that the system is told; plain values.
#pragma once

#include <optional>
#include <string>

namespace sonvara {

enum class PlaybackStatus { playing, paused, stopped };

/// A player's current track. All texts are valid UTF-8 and may be empty, long, or hold anything.
struct Track {
    std::string title;
    std::string artist;  ///< several artists are joined by ", "
    std::string album;
    bool loved = false;
    std::string id;   ///< the player's own name for the track; not unique in every player
    std::string url;  ///< where the track lies
};

/// The latest that a player said.
struct PlayerState {
    PlaybackStatus status = PlaybackStatus::stopped;
    Track track;
};

/// A message of a player: what it names is new, the rest is as before.
struct StateChange {
    std::optional<PlaybackStatus> status;
    std::optional<Track> track;
};

/// What the system is told of a player. Without a track it is exactly `Picture{}`.
struct Picture {
    PlaybackStatus status = PlaybackStatus::stopped;
    std::string title;
    std::string artist;
    std::string album;
    bool loved = false;

    [[nodiscard]] bool hasTrack() const { return !title.empty(); }
    friend bool operator==(const Picture&, const Picture&) = default;
};

/// Takes `change` into `state`. The track of a stopped player is forgotten: what it names next may
/// lag behind, so a track counts only if it is named after the stop.
void merge(PlayerState& state, StateChange change);

/// Whether both states are about the same thing, whatever the rest of their description says.
[[nodiscard]] bool sameSubject(const PlayerState& a, const PlayerState& b);

/// Whether a track is one that the user did not choose.
[[nodiscard]] bool isAdvertisement(const Track& track);

/// Whether a track needs no more words. Players that have not read a file's tags yet show its file
/// name and no artist.
[[nodiscard]] bool isComplete(const Track& track);

/// A stopped player, an advertisement and a track without a title are told as no track.
[[nodiscard]] Picture pictureOf(const PlayerState& state);

}  // namespace sonvara
