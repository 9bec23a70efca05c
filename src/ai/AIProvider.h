// The AI command-line tools that can write an intro.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string_view>

namespace sonvara {

/// One of the tools, and what is fixed for it. There are no others than these. Any thread.
class AIProvider {
public:
    using LeadingArguments = std::array<std::string_view, 2>;

    static const AIProvider claudeCLI;
    static const AIProvider geminiCLI;
    /// In the order in which the settings offer them.
    static const std::array<AIProvider, 2> allCases;

    /// The tool with exactly this raw value, else nothing.
    [[nodiscard]] static std::optional<AIProvider> fromRawValue(std::string_view rawValue);

    /// What the settings store.
    [[nodiscard]] constexpr std::string_view rawValue() const { return rawValue_; }
    /// Its identity in lists: the raw value.
    [[nodiscard]] constexpr std::string_view id() const { return rawValue_; }
    /// What the user reads.
    [[nodiscard]] constexpr std::string_view displayName() const { return displayName_; }
    [[nodiscard]] constexpr std::string_view executableName() const { return executableName_; }
    /// The prompt follows as one more argument.
    [[nodiscard]] constexpr const LeadingArguments& leadingArguments() const { return leadingArguments_; }

    friend constexpr bool operator==(const AIProvider& a, const AIProvider& b)
    {
        return a.rawValue_ == b.rawValue_;
    }

private:
    constexpr AIProvider(std::string_view rawValue, std::string_view displayName,
                         std::string_view executableName, LeadingArguments leadingArguments)
        : rawValue_(rawValue),
          displayName_(displayName),
          executableName_(executableName),
          leadingArguments_(leadingArguments)
    {}

    std::string_view rawValue_;
    std::string_view displayName_;
    std::string_view executableName_;
    LeadingArguments leadingArguments_;
};

inline constexpr AIProvider AIProvider::claudeCLI{
    "claudeCLI", "Claude (Anthropic) CLI", "claude", {"-p", "--strict-mcp-config"}};
inline constexpr AIProvider AIProvider::geminiCLI{
    "geminiCLI", "Gemini CLI", "gemini", {"--skip-trust", "-p"}};
inline constexpr std::array<AIProvider, 2> AIProvider::allCases{claudeCLI, geminiCLI};

}  // namespace sonvara

/// Of the raw value.
template <>
struct std::hash<sonvara::AIProvider> {
    std::size_t operator()(const sonvara::AIProvider& provider) const noexcept
    {
        return std::hash<std::string_view>()(provider.rawValue());
    }
};
