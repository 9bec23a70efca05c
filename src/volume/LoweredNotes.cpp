#include "volume/LoweredNotes.h"

#include <cstddef>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>

namespace sonvara {
namespace {

constexpr std::string_view heading =
    "Players that Sonvara has lowered: volume, lowered volume, day, player\n";
constexpr std::string_view oldHeading = "Players that Sonvara has lowered: volume, lowered volume, program\n";
constexpr std::size_t mostNotes = 100;
constexpr int lastDay = 1'000'000;
constexpr std::size_t longestNumber = 32;
constexpr double loudest = 100;  // some players go far beyond full

/// Takes a number from 0 to `most` and the blank behind it off the front of `line`. Streams, as the other
/// means of the library depend on the user's language or do not know fractions everywhere.
template <typename Number>
std::optional<Number> takeNumber(std::string_view& line, Number most)
{
    const auto size = line.find(' ');
    if (size > longestNumber) return std::nullopt;  // or there is no blank
    std::istringstream in{std::string(line.substr(0, size))};
    in.imbue(std::locale::classic());
    Number number{};
    in >> std::noskipws >> number;
    if (in.fail() || !(number >= 0 && number <= most)) return std::nullopt;
    if (in.peek() != std::istringstream::traits_type::eof()) return std::nullopt;
    line.remove_prefix(size + 1);
    return number;
}

std::optional<LoweredNote> parseNote(std::string_view line)
{
    const auto home = takeNumber(line, loudest);
    const auto low = home ? takeNumber(line, loudest) : std::nullopt;
    const auto day = low ? takeNumber(line, lastDay) : std::nullopt;
    if (!day || line.empty()) return std::nullopt;
    return LoweredNote{std::string(line), {*home, *low}, *day};
}

std::optional<LoweredNote> parseOldNote(std::string_view line, int today)
{
    const auto home = takeNumber(line, 100);
    const auto low = home ? takeNumber(line, 100) : std::nullopt;
    if (!low || line.empty()) return std::nullopt;
    return LoweredNote{stableName(line), {*home / 100.0, *low / 100.0}, today};
}

std::string written(double volume, int digits)
{
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << std::setprecision(digits) << volume;
    return out.str();
}

/// In few digits, if they are the same number.
std::string written(double volume)
{
    constexpr int few = 6;
    auto text = written(volume, few) + ' ';
    std::string_view rest(text);
    if (takeNumber(rest, loudest) == volume) return text;
    return written(volume, std::numeric_limits<double>::max_digits10) + ' ';
}

}  // namespace

std::string stableName(std::string_view name)
{
    constexpr std::string_view mark = ".instance";
    const auto at = name.rfind(mark);
    if (at != std::string_view::npos && at > 0 &&
        name.find_first_not_of("0123456789_", at + mark.size()) == std::string_view::npos)
        name = name.substr(0, at);
    return std::string(name);
}

std::string format(const LoweredNotes& notes)
{
    std::string text(heading);
    for (const auto& note : notes) {
        text.append(written(note.levels.home)).append(written(note.levels.low));
        text.append(std::to_string(note.day)).append(" ").append(note.player).append("\n");
    }
    return text;
}

std::optional<LoweredNotes> parseLoweredNotes(std::string_view text, int today)
{
    const bool isOld = text.starts_with(oldHeading);
    if ((!isOld && !text.starts_with(heading)) || text.back() != '\n') return std::nullopt;  // cut off
    text.remove_prefix(isOld ? oldHeading.size() : heading.size());
    LoweredNotes notes;
    while (!text.empty()) {
        const auto line = text.substr(0, text.find('\n'));
        const auto note = isOld ? parseOldNote(line, today) : parseNote(line);
        if (!note || notes.size() == mostNotes) return std::nullopt;
        notes.push_back(*note);
        text = text.substr(line.size() + 1);
    }
    return notes;
}

}  // namespace sonvara
