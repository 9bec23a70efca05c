#include "platform/linux/players/PlayerState.h"

#include "platform/linux/players/TrackDescription.h"

#include <string_view>
#include <utility>

namespace sonvara {
namespace {

bool contains(const std::string& text, std::string_view part)
{
    return text.find(part) != std::string::npos;
}

}  // namespace

void merge(PlayerState& state, StateChange change)
{
    if (change.track) state.track = std::move(*change.track);
    if (change.status) state.status = *change.status;
    if (change.status == PlaybackStatus::stopped) state.track = {};
}

bool isSameTrack(const PlayerState& a, const PlayerState& b)
{
    return a.track.title == b.track.title && a.track.id == b.track.id && a.track.url == b.track.url;
}

bool isAdvertisement(const Track& track)
{
    if (contains(track.id, "/ad/") || track.id.starts_with("spotify:ad:")) return true;
    // A folder of the user's own may be called "ad".
    return contains(track.url, "/ad/") && !track.url.starts_with("file:");
}

bool isComplete(const Track& track)
{
    return !track.title.empty() && !track.artist.empty() && !isNamedAfterFile(track);
}

PlayerSnapshot snapshotOf(const PlayerState& state)
{
    if (state.status == PlaybackStatus::stopped || isAdvertisement(state.track)) return {};
    const auto track = tidied(state.track);
    if (track.title.empty()) return {};
    return {state.status, track.title, track.artist, track.album, track.loved};
}

}  // namespace sonvara
