// What is written down about players to which their volume is owed.
#pragma once

#include "volume/LoweredPlayer.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sonvara {

struct LoweredNote {
    std::string player;  ///< its stable name: the same when it is started anew; no line feeds
    VolumeLevels levels;
    int day = 0;  ///< when it was last seen, in days since 1970

    friend bool operator==(const LoweredNote&, const LoweredNote&) = default;
};

using LoweredNotes = std::vector<LoweredNote>;

/// A bus name without what changes from one start to the next: VLC and mpv add ".instance" and a number.
[[nodiscard]] std::string stableName(std::string_view name);

/// The notes as a text: a first line that says what it is, then a line for each note.
[[nodiscard]] std::string format(const LoweredNotes& notes);

/// The notes of such a text; nothing when any part of it is not as `format` writes it, or as it was written
/// up to version 1.0: then `today` is their day.
[[nodiscard]] std::optional<LoweredNotes> parseLoweredNotes(std::string_view text, int today);

}  // namespace sonvara
