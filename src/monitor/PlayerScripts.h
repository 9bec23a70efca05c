// The scripts that ask the two players what they play: a wire format, to be sent byte for byte.
#pragma once

#include <string>

namespace sonvara {

/// Answers "notrunning", "error", or title, artist, album, playing state and loved flag joined by "||".
[[nodiscard]] const std::string& musicPollScript();

/// The same without the loved flag, which Spotify's tracks do not have.
[[nodiscard]] const std::string& spotifyPollScript();

}  // namespace sonvara
