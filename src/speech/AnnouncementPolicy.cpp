#include "speech/AnnouncementPolicy.h"

#include "support/Text.h"

namespace sonvara {

bool AnnouncementPolicy::shouldAnnounce(std::string_view track, std::string_view artist,
                                        std::string_view album, std::string_view lastTrack,
                                        std::string_view lastArtist, std::string_view lastAlbum)
{
    if (track.empty() || text::equal(track, lastTrack)) return false;
    const bool isAlbumPlaythrough =
        !album.empty() && text::equal(album, lastAlbum) && text::equal(artist, lastArtist);
    return !isAlbumPlaythrough;
}

}  // namespace sonvara
