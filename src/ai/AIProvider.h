// The AI command-line tools that can write an intro.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sonvara {

enum class AIProvider { claudeCLI, geminiCLI };

/// What is fixed for each tool. The raw value is what the settings store.
struct AIProviderInfo {
    AIProvider provider;
    std::string_view rawValue;
    std::string_view displayName;
    std::string_view executableName;
    std::array<std::string_view, 2> leadingArguments;  ///< the prompt follows as one more argument
};

/// All tools, in the order in which the settings offer them.
inline constexpr std::array allAIProviders{
    AIProviderInfo{AIProvider::claudeCLI,
                   "claudeCLI",
                   "Claude (Anthropic) CLI",
                   "claude",
                   {"-p", "--strict-mcp-config"}},
    AIProviderInfo{AIProvider::geminiCLI, "geminiCLI", "Gemini CLI", "gemini", {"--skip-trust", "-p"}},
};

/// What is fixed for `provider`.
[[nodiscard]] const AIProviderInfo& info(AIProvider provider);

/// The tool with exactly this raw value, else nothing.
[[nodiscard]] std::optional<AIProvider> aiProviderFromRawValue(std::string_view rawValue);

}  // namespace sonvara
