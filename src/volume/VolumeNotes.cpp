#include "volume/VolumeNotes.h"

#include <charconv>
#include <cstddef>

namespace sonvara {
namespace {

constexpr std::string_view heading = "Players that Sonvara has lowered: volume, lowered volume, program\n";
constexpr std::size_t mostNotes = 100;

/// Takes a volume and the blank behind it off the front of `line`.
std::optional<int> takeVolume(std::string_view& line)
{
    int volume = 0;
    const auto parsed = std::from_chars(line.data(), line.data() + line.size(), volume);
    const auto size = static_cast<std::size_t>(parsed.ptr - line.data());
    if (parsed.ec != std::errc{} || volume < 0 || volume > 100) return std::nullopt;
    if (size == line.size() || line[size] != ' ') return std::nullopt;
    line.remove_prefix(size + 1);
    return volume;
}

std::optional<VolumeNote> parseNote(std::string_view line)
{
    const auto volume = takeVolume(line);
    const auto ducked = volume ? takeVolume(line) : std::nullopt;
    if (!ducked || line.empty()) return std::nullopt;
    return VolumeNote{std::string(line), *volume, *ducked};
}

}  // namespace

std::string format(const VolumeNotes& notes)
{
    std::string text(heading);
    for (const auto& note : notes) {
        text.append(std::to_string(note.volume)).append(" ").append(std::to_string(note.ducked));
        text.append(" ").append(note.program).append("\n");
    }
    return text;
}

std::optional<VolumeNotes> parseVolumeNotes(std::string_view text)
{
    if (!text.starts_with(heading) || text.back() != '\n') return std::nullopt;  // cut off
    text.remove_prefix(heading.size());
    VolumeNotes notes;
    while (!text.empty()) {
        const auto line = text.substr(0, text.find('\n'));
        const auto note = parseNote(line);
        if (!note || notes.size() == mostNotes) return std::nullopt;
        notes.push_back(*note);
        text.remove_prefix(line.size() + 1);
    }
    return notes;
}

}  // namespace sonvara
