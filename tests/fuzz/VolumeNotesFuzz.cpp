// The file with the notes about lowered players.
#include "Require.h"
#include "volume/LoweredNotes.h"

using namespace sonvara;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto notes = parseLoweredNotes(fuzz::textOf(data, size), 20000);
    if (!notes) return 0;
    require(parseLoweredNotes(format(*notes), 0) == notes);
    for (const auto& note : *notes) {
        require(note.levels.home >= 0 && note.levels.home <= 100 && note.levels.low >= 0 &&
                note.levels.low <= 100);
    }
    return 0;
}
