#include "speech/AnnouncementPolicy.h"

#include "support/Text.h"

namespace sonvara {

bool AnnouncementPolicy::shouldAnnounce(const TrackIdentity& reported, const TrackIdentity& last)
{
    if (!isNewTrack(reported.track, last.track)) return false;
    const bool isAlbumPlaythrough = !reported.album.empty() && text::equal(reported.album, last.album) &&
                                    text::equal(reported.artist, last.artist);
    return !isAlbumPlaythrough;
}

bool AnnouncementPolicy::isNewTrack(std::string_view track, std::string_view lastTrack)
{
    return !track.empty() && !text::equal(track, lastTrack);
}

}  // namespace sonvara
