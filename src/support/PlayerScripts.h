// The players that the system knows, and the scripts that it sends to them: a wire format, sent and
// recognised byte for byte.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace sonvara {

/// The two players that the system knows, by the names that it and they use.
inline constexpr const char* musicSource = "Music";
inline constexpr const char* spotifySource = "Spotify";

/// The notifications that they post.
inline constexpr const char* musicNotification = "com.apple.Music.playerInfo";
inline constexpr const char* spotifyNotification = "com.spotify.client.PlaybackStateChanged";

/// Asks Music what it plays.
[[nodiscard]] std::string musicPollScript();

/// The same for Spotify, without the loved flag, which its tracks do not have.
[[nodiscard]] std::string spotifyPollScript();

/// What a poll script answers: one of two words, or the fields of the track.
namespace poll {

inline constexpr const char* notRunning = "notrunning";
inline constexpr const char* failed = "error";  ///< the player runs, and has no track or does not say

inline constexpr std::size_t musicFields = 5;
inline constexpr std::size_t spotifyFields = 4;

struct Track {
    std::string title;
    std::string artist;
    std::string album;
    bool isPlaying = false;
    std::optional<bool> isLoved;  ///< the fifth field
};

/// The fields of `track`, joined by "||".
[[nodiscard]] std::string write(const Track& track);

/// The track in `answer`, without white space and line ends around the fields. They are taken by position, so a
/// title that holds the separator shifts the rest. Absent when there are fewer than `fields` (4 or 5).
[[nodiscard]] std::optional<Track> read(std::string_view answer, std::size_t fields);

}  // namespace poll

/// A command that reads or sets a player's own volume, 0 (silent) to 100.
struct VolumeCommand {
    std::string player;         ///< the application's name; stands in the text as it is
    std::optional<int> volume;  ///< the volume to set; absent: read it

    friend bool operator==(const VolumeCommand&, const VolumeCommand&) = default;
};

[[nodiscard]] std::string volumeScript(const VolumeCommand& command);

/// The command that `script` is, if it is one: a player's name without quotation marks, and a decimal
/// number from 0 to 100 without sign or leading zeros.
[[nodiscard]] std::optional<VolumeCommand> parseVolumeScript(std::string_view script);

}  // namespace sonvara
