#include "support/Text.h"

#include <utf8proc.h>

#include <cstdlib>
#include <memory>
#include <numeric>
#include <optional>

namespace sonvara::text {
namespace {

struct Character {
    utf8proc_int32_t codepoint;  // negative: the bytes are no valid character; has no properties
    std::size_t size;            // bytes, at least 1
};

Character decodeFirst(std::string_view s)
{
    utf8proc_int32_t codepoint = -1;
    const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(s.data());
    const auto size = utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(s.size()), &codepoint);
    if (size <= 0) return {-1, 1};
    return {codepoint, static_cast<std::size_t>(size)};
}

/// Where the character that has a byte at `position` begins.
std::size_t beginOfCharacter(std::string_view s, std::size_t position)
{
    auto begin = position;
    while (begin > 0 && position - begin < 3 && (static_cast<unsigned char>(s[begin]) & 0xC0U) == 0x80U)
        --begin;
    return begin;
}

bool isWhitespaceOrNewline(utf8proc_int32_t codepoint)
{
    constexpr utf8proc_int32_t zeroWidthSpace = 0x200B;  // no category of its own tells that it is a space
    if ((codepoint >= 0x09 && codepoint <= 0x0D) || codepoint == 0x85) return true;
    if (codepoint == zeroWidthSpace) return true;
    switch (utf8proc_category(codepoint)) {
    case UTF8PROC_CATEGORY_ZS:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP: return true;
    default: return false;
    }
}

/// Bringing the marks on one letter into their order takes the square of their number in time: a title of a
/// megabyte of them would take hours. No writing has more than a few.
bool hasTooManyMarks(std::string_view s)
{
    constexpr int most = 100;
    int marks = 0;
    while (!s.empty()) {
        const auto character = decodeFirst(s);
        const bool isMark = utf8proc_get_property(character.codepoint)->combining_class > 0;
        marks = isMark ? marks + 1 : 0;
        if (marks > most) return true;
        s.remove_prefix(character.size);
    }
    return false;
}

std::optional<std::string> normalized(std::string_view s)
{
    if (hasTooManyMarks(s)) return std::nullopt;
    utf8proc_uint8_t* result = nullptr;
    const auto options = static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE);
    const auto size = utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(s.data()),
                                   static_cast<utf8proc_ssize_t>(s.size()), &result, options);
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(result, &std::free);
    if (size < 0) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(result), static_cast<std::size_t>(size));
}

/// One user-perceived character of a text.
struct Cluster {
    std::size_t begin;    // of its first byte
    std::size_t columns;  // one at least: what is new to the library may be as wide
};

std::vector<Cluster> clustersOf(std::string_view s)
{
    std::vector<Cluster> clusters;
    Clusters counter;
    for (std::size_t at = 0; at < s.size();) {
        const auto character = decodeFirst(s.substr(at));
        counter.add(s.substr(at, character.size));
        if (counter.count() > clusters.size()) clusters.push_back({at, 1});
        if (utf8proc_charwidth(character.codepoint) > 1) clusters.back().columns = 2;
        at += character.size;
    }
    return clusters;
}

}  // namespace

bool equal(std::string_view a, std::string_view b)
{
    if (a == b) return true;
    const auto left = normalized(a);
    return left && left == normalized(b);
}

std::string_view trim(std::string_view s)
{
    while (!s.empty()) {
        const auto first = decodeFirst(s);
        if (!isWhitespaceOrNewline(first.codepoint)) break;
        s.remove_prefix(first.size);
    }
    while (!s.empty()) {
        const auto begin = beginOfCharacter(s, s.size() - 1);
        const auto last = decodeFirst(s.substr(begin));
        const bool isAtEnd = begin + last.size == s.size();
        if (!isAtEnd || !isWhitespaceOrNewline(last.codepoint)) break;
        s.remove_suffix(last.size);
    }
    return s;
}

std::vector<std::string_view> split(std::string_view s, std::string_view separator)
{
    std::vector<std::string_view> pieces;
    for (auto end = s.find(separator); end != std::string_view::npos; end = s.find(separator)) {
        pieces.push_back(s.substr(0, end));
        s.remove_prefix(end + separator.size());
    }
    pieces.push_back(s);
    return pieces;
}

void Clusters::add(std::string_view s)
{
    while (!s.empty()) {
        const auto character = decodeFirst(s);
        const bool joins = previous_ >= 0 && character.codepoint >= 0 &&
                           !utf8proc_grapheme_break_stateful(previous_, character.codepoint, &state_);
        if (!joins) ++count_;
        if (character.codepoint < 0) state_ = 0;
        previous_ = character.codepoint;
        s.remove_prefix(character.size);
    }
}

std::size_t length(std::string_view s)
{
    Clusters clusters;
    clusters.add(s);
    return clusters.count();
}

std::string cutInTheMiddle(std::string_view s, std::size_t columns)
{
    const auto clusters = clustersOf(s);
    const auto add = [](std::size_t sum, const Cluster& cluster) { return sum + cluster.columns; };
    if (std::accumulate(clusters.begin(), clusters.end(), std::size_t{0}, add) <= columns)
        return std::string(s);
    auto room = columns - 1;  // beside the ellipsis
    auto first = clusters.begin();
    for (auto half = columns / 2; first->columns <= half; ++first) {
        half -= first->columns;
        room -= first->columns;
    }
    auto last = clusters.end();
    while ((last - 1)->columns <= room) room -= (--last)->columns;
    const auto end = last == clusters.end() ? s.size() : last->begin;
    return std::string(s.substr(0, first->begin)).append("…").append(s.substr(end));
}

std::string wrap(std::string_view s, std::size_t columns)
{
    std::string lines;
    const auto clusters = clustersOf(s);
    const auto end = clusters.end();
    const auto between = [&](auto first, auto behind) {
        const auto from = first == end ? s.size() : first->begin;
        return s.substr(from, (behind == end ? s.size() : behind->begin) - from);
    };
    for (auto line = clusters.begin();;) {
        auto behind = line;
        for (auto room = columns; behind != end && behind->columns <= room; ++behind) room -= behind->columns;
        if (behind == end) return lines.append(between(line, end));
        auto next = behind;
        for (auto blank = behind; blank != line; --blank) {
            if (between(blank, blank + 1) != " ") continue;
            behind = blank;
            next = blank + 1;
            break;
        }
        lines.append(between(line, behind)).append("\n");
        line = next;
    }
}

std::string_view firstCharacter(std::string_view s)
{
    return s.substr(0, decodeFirst(s).size);
}

std::string_view prefix(std::string_view s, std::size_t size)
{
    return s.size() <= size ? s : s.substr(0, beginOfCharacter(s, size));
}

bool isValidUtf8(std::string_view s)
{
    while (!s.empty()) {
        const auto character = decodeFirst(s);
        if (character.codepoint < 0) return false;
        s.remove_prefix(character.size);
    }
    return true;
}

}  // namespace sonvara::text
