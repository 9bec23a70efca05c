#include "ai/AIProvider.h"

#include <algorithm>

namespace sonvara {

const AIProviderInfo& info(AIProvider provider)
{
    return *std::ranges::find(allAIProviders, provider, &AIProviderInfo::provider);
}

std::optional<AIProvider> aiProviderFromRawValue(std::string_view rawValue)
{
    for (const auto& candidate : allAIProviders) {
        if (candidate.rawValue == rawValue) return candidate.provider;
    }
    return std::nullopt;
}

}  // namespace sonvara
