// What of a player's description of a track is worth saying aloud. Players fill what they do not know with
// addresses, file names and words such as "Unknown artist".
#pragma once

#include "platform/linux/players/PlayerState.h"

namespace sonvara {

/// Whether the track is a stream without an end, such as a radio station, and not a piece of its own. A file never
/// is, although players do not know its length at first; nor is a track of a catalogue, whose length is known.
[[nodiscard]] bool isStream(const Track& track);

/// Whether the title is nothing but the name of the file. Players show it until they have read the tags.
[[nodiscard]] bool isNamedAfterFile(const Track& track);

/// The track without what is no title, no artist and no album:
///  - a file's name loses its suffix, and its underscores become blanks; an address is no title at all
///  - words for something unknown go, and the folder of a file without tags is no album
///  - a stream has no album, and what stands there for the station is no artist
[[nodiscard]] Track tidied(Track track);

}  // namespace sonvara
