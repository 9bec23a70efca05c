// The file with the notes about lowered players.
#include "Require.h"
#include "volume/VolumeNotes.h"

using namespace sonvara;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto notes = parseVolumeNotes(fuzz::textOf(data, size));
    if (!notes) return 0;
    require(parseVolumeNotes(format(*notes)) == notes);
    for (const auto& note : *notes) {
        require(note.volume >= 0 && note.volume <= 100 && note.ducked >= 0 && note.ducked <= 100);
    }
    return 0;
}
