#include "platform/linux/speech/LineText.h"

#include "support/Text.h"

#include <cstdint>

namespace sonvara {

namespace {

bool isControl(std::string_view character)
{
    const auto first = static_cast<std::uint8_t>(character[0]);
    if (character.size() == 1) return first < 0x20 || first == 0x7F;
    return first == 0xC2 && static_cast<std::uint8_t>(character[1]) < 0xA0;
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

}  // namespace sonvara
