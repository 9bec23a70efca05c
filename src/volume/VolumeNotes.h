// What is written down about players that are lowered.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sonvara {

/// A player was, or is about to be, lowered. Volumes are 0 to 100.
struct VolumeNote {
    std::string program;  ///< which program it is, so that it is found again; no line feeds
    int volume = 0;       ///< to go back to
    int ducked = 0;       ///< what it was set to

    friend bool operator==(const VolumeNote&, const VolumeNote&) = default;
};

using VolumeNotes = std::vector<VolumeNote>;

/// The notes as a text: a first line that says what it is, then a line for each note.
[[nodiscard]] std::string format(const VolumeNotes& notes);

/// The notes of such a text; nothing when any part of it is not as `format` writes it.
[[nodiscard]] std::optional<VolumeNotes> parseVolumeNotes(std::string_view text);

}  // namespace sonvara
