#include "ai/AIProvider.h"

#include <algorithm>

namespace sonvara {

std::optional<AIProvider> AIProvider::fromRawValue(std::string_view rawValue)
{
    const auto* const found = std::ranges::find(allCases, rawValue, &AIProvider::rawValue);
    return found != allCases.end() ? std::optional(*found) : std::nullopt;
}

}  // namespace sonvara
