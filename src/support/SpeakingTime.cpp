#include "support/SpeakingTime.h"

#include <algorithm>
#include <cstdint>

namespace sonvara {

namespace {

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

std::chrono::milliseconds longestTime(std::string_view text, const SpeakingTime& time)
{
    const auto quick = std::ranges::count_if(text, isQuickToSpeak);
    const auto inner = std::ranges::count_if(text, continuesCharacter);
    const auto other = static_cast<std::ptrdiff_t>(text.size()) - quick - inner;
    return time.base + quick * time.perLetter + other * time.perOther;
}

}  // namespace sonvara
