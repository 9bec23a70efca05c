// The rule that decides whether a reported track deserves a spoken intro.
#pragma once

#include <string_view>

namespace sonvara {

/// Pure: no state, no clock, no settings. Any thread.
struct AnnouncementPolicy {
    AnnouncementPolicy() = delete;

    /// Whether to announce a reported track right after the last one (all empty at start): a title that
    /// differs from the last one, unless it goes on with the same non-empty album by the same artist. Only
    /// the title tells tracks apart, so the same title by another artist counts as the same track.
    [[nodiscard]] static bool shouldAnnounce(std::string_view track, std::string_view artist,
                                             std::string_view album, std::string_view lastTrack,
                                             std::string_view lastArtist, std::string_view lastAlbum);
};

}  // namespace sonvara
