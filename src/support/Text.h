// Rules for Unicode text that the standard library does not have. All text is UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sonvara::text {

/// Whether two texts are canonically equivalent (their NFC forms are equal). Case, white space and
/// punctuation count. Texts that are not valid UTF-8, or have a letter with more than a hundred marks, are
/// compared byte by byte.
[[nodiscard]] bool equal(std::string_view a, std::string_view b);

/// `s` without the Unicode white space (categories Zs, Zl, Zp, tab, zero width space) and line ends (U+000A
/// to U+000D, U+0085) at both ends.
[[nodiscard]] std::string_view trim(std::string_view s);

/// The pieces of `s` between the occurrences of `separator`, found from left to right; empty pieces
/// are kept, so there is always at least one.
[[nodiscard]] std::vector<std::string_view> split(std::string_view s, std::string_view separator);

/// The number of user-perceived characters (extended grapheme clusters). A byte that belongs to no
/// valid character counts as one.
[[nodiscard]] std::size_t length(std::string_view s);

/// Counts the user-perceived characters of a text that comes in pieces, each of which begins with a character.
class Clusters {
public:
    void add(std::string_view s);
    [[nodiscard]] std::size_t count() const { return count_; }

private:
    std::size_t count_ = 0;
    std::int32_t state_ = 0;      // the library's
    std::int32_t previous_ = -1;  // the last code point
};

/// `s` cut in its middle, with an ellipsis there, to at most `columns` (at least one): a character takes one, or two when it
/// is a wide one of East Asia or an emoji. User-perceived characters stay whole. Says how wide a text is wherever no font can.
[[nodiscard]] std::string cutInTheMiddle(std::string_view s, std::size_t columns);

/// `s` with line feeds, so that no line takes more than `columns` (at least two), counted as above: in place of the last blank
/// (U+0020) of a line that is too long, or behind a whole user-perceived character where it has none. `s` has no line feeds.
[[nodiscard]] std::string wrap(std::string_view s, std::size_t columns);

/// The first character of `s`, or its first byte if no character begins with it. `s` must not be empty.
[[nodiscard]] std::string_view firstCharacter(std::string_view s);

/// The beginning of `s` up to at most `size` bytes, without a part of a character at its end.
[[nodiscard]] std::string_view prefix(std::string_view s, std::size_t size);

/// Whether `s` is well-formed UTF-8 (no overlong forms, no surrogates).
[[nodiscard]] bool isValidUtf8(std::string_view s);

}  // namespace sonvara::text
