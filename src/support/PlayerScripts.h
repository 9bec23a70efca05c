// The players that the system knows, and the scripts that it sends to them: a wire format, sent and
// recognised byte for byte.
#pragma once

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

/// Asks Music what it plays. The answer is "notrunning", "error", or title, artist, album, playing state
/// and loved flag joined by "||".
[[nodiscard]] const std::string& musicPollScript();

/// The same for Spotify, without the loved flag, which its tracks do not have.
[[nodiscard]] const std::string& spotifyPollScript();

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
