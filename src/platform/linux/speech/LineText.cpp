#include "platform/linux/speech/LineText.h"

#include "support/Text.h"

#include <algorithm>
#include <cstdint>

namespace sonvara {

namespace {

bool isControl(std::string_view character)
{
    const auto first = static_cast<std::uint8_t>(character[0]);
    if (character.size() == 1) return first < 0x20 || first == 0x7F;
    return first == 0xC2 && static_cast<std::uint8_t>(character[1]) < 0xA0;
}

bool isQuickToSpeak(char c)
{
    const auto byte = static_cast<std::uint8_t>(c);
    return byte < 0x80 && !(c >= '0' && c <= '9');
}

bool continuesCharacter(char c)
{
    return (static_cast<std::uint8_t>(c) & 0xC0) == 0x80;
}

}  // namespace

std::string spokenText(std::string_view line)
{
    std::string spoken;
    for (std::size_t count = 0; !line.empty() && count < longestLine; ++count) {
        const auto character = text::firstCharacter(line);
        if (text::isValidUtf8(character) && !isControl(character))
            spoken += character;
        else
            spoken += ' ';
        line.remove_prefix(character.size());
    }
    return spoken.find_first_not_of(' ') == std::string::npos ? std::string() : spoken;
}

std::chrono::milliseconds longestTime(std::string_view text, const SpeakingTime& time)
{
    const auto quick = std::ranges::count_if(text, isQuickToSpeak);
    const auto inner = std::ranges::count_if(text, continuesCharacter);
    const auto other = static_cast<std::ptrdiff_t>(text.size()) - quick - inner;
    return time.base + quick * time.perLetter + other * time.perOther;
}

}  // namespace sonvara
