// One observation of one player.
#pragma once

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

}  // namespace sonvara
