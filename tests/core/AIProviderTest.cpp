// The AI tools that are known.
#include "ai/AIProvider.h"

#include <gmock/gmock.h>

#include <unordered_set>

namespace sonvara::test {
namespace {

using testing::ElementsAre;

TEST(AIProviderTest, ClaudeComesFirst)
{
    EXPECT_THAT(AIProvider::allCases, ElementsAre(AIProvider::claudeCLI, AIProvider::geminiCLI));
}

TEST(AIProviderTest, EachHasItsFixedProperties)
{
    const auto& claude = AIProvider::claudeCLI;
    EXPECT_EQ(claude.rawValue(), "claudeCLI");
    EXPECT_EQ(claude.id(), "claudeCLI");
    EXPECT_EQ(claude.displayName(), "Claude (Anthropic) CLI");
    EXPECT_EQ(claude.executableName(), "claude");
    EXPECT_THAT(claude.leadingArguments(), ElementsAre("-p", "--strict-mcp-config"));
    const auto& gemini = AIProvider::geminiCLI;
    EXPECT_EQ(gemini.rawValue(), "geminiCLI");
    EXPECT_EQ(gemini.id(), "geminiCLI");
    EXPECT_EQ(gemini.displayName(), "Gemini CLI");
    EXPECT_EQ(gemini.executableName(), "gemini");
    EXPECT_THAT(gemini.leadingArguments(), ElementsAre("--skip-trust", "-p"));
}

TEST(AIProviderTest, RawValuesAreComparedWithTheirCase)
{
    EXPECT_EQ(AIProvider::fromRawValue("claudeCLI"), AIProvider::claudeCLI);
    EXPECT_EQ(AIProvider::fromRawValue("geminiCLI"), AIProvider::geminiCLI);
    for (const auto* other : {"", "GeminiCLI", "claude", "claudeCLI "})
        EXPECT_EQ(AIProvider::fromRawValue(other), std::nullopt) << other;
}

TEST(AIProviderTest, OfOneRawValueIsOneAndTheSame)
{
    std::unordered_set<AIProvider> known(AIProvider::allCases.begin(), AIProvider::allCases.end());
    known.insert(*AIProvider::fromRawValue("geminiCLI"));
    EXPECT_EQ(known.size(), 2U);
    EXPECT_EQ(std::hash<AIProvider>()(AIProvider::claudeCLI), std::hash<std::string_view>()("claudeCLI"));
}

}  // namespace
}  // namespace sonvara::test
