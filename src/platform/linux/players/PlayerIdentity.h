// Which programs on the bus count as music players.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace sonvara {

/// The two players that the system knows: the Spotify client, and the desktop's own music player.
enum class PlayerKind { music, spotify };
inline constexpr std::array allPlayerKinds{PlayerKind::music, PlayerKind::spotify};

/// What the name on the bus says of its owner.
enum class NameKind {
    spotify,
    player,       ///< a player, as far as the name tells
    browserLike,  ///< the name of a browser's engine; music clients built on one bear it, too
    ignored,      ///< no player: a proxy or a mirror of other players
};

/// Every player's name begins with this and a dot.
inline constexpr std::string_view namePrefix = "org.mpris.MediaPlayer2";

/// How a program introduces itself; empty where it does not.
struct Introduction {
    std::string identity;      ///< the name shown to the user
    std::string desktopEntry;  ///< the base name of its desktop file

    [[nodiscard]] bool isEmpty() const { return identity.empty() && desktopEntry.empty(); }
};

[[nodiscard]] NameKind kindOfName(std::string_view name);

/// Whether a program is a web browser by its own words; by its bus name only if it says nothing.
[[nodiscard]] bool isBrowser(NameKind name, const Introduction& introduction);

}  // namespace sonvara
