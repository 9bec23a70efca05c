// The offline intro line: what the DJ says when no AI line is wanted or none arrives.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace sonvara {

/// Pure functions but for the random opener. Any thread.
struct DJ {
    DJ() = delete;

    static constexpr std::array<std::string_view, 6> openers{
        "Now playing", "Up next", "Here we go with", "Spinning up", "Coming your way", "You're listening to"};

    /// "OPENER TRACK by ARTIST, from ALBUM." without the parts whose text is empty, and a compliment for
    /// a favourite. Without an `opener`, each call draws one from the system's random source. The texts are
    /// taken as they are.
    [[nodiscard]] static std::string offlineIntro(std::string_view track, std::string_view artist,
                                                  std::string_view album, bool favorited,
                                                  std::optional<std::string_view> opener = std::nullopt);
};

}  // namespace sonvara
