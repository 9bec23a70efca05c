// The two players that the system knows, by the names that it and they use.
#pragma once

namespace sonvara {

inline constexpr const char* musicSource = "Music";
inline constexpr const char* spotifySource = "Spotify";

/// The notifications that they post.
inline constexpr const char* musicNotification = "com.apple.Music.playerInfo";
inline constexpr const char* spotifyNotification = "com.spotify.client.PlaybackStateChanged";

}  // namespace sonvara
