// The rule that decides whether a reported track deserves a spoken intro.
#pragma once

#include <string_view>

namespace sonvara {

/// A track as the policy sees it.
struct TrackIdentity {
    std::string_view track;
    std::string_view artist;
    std::string_view album;
};

/// Pure rules: no state, no clock, no settings. Any thread.
struct AnnouncementPolicy {
    AnnouncementPolicy() = delete;

    /// Whether to announce `reported` right after `last` (all empty at start): a title that differs from
    /// the last one, unless it goes on with the same non-empty album by the same artist. Only the title
    /// tells tracks apart, so the same title by another artist counts as the same track.
    [[nodiscard]] static bool shouldAnnounce(const TrackIdentity& reported, const TrackIdentity& last);

    /// Whether a report names another track than the last one: a non-empty, different title.
    [[nodiscard]] static bool isNewTrack(std::string_view track, std::string_view lastTrack);
};

}  // namespace sonvara
