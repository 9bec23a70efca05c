// The AI tools that are known.
#include "ai/AIProvider.h"

#include <gmock/gmock.h>

namespace sonvara::test {
namespace {

using testing::ElementsAre;

TEST(AIProviderTest, ClaudeComesFirst)
{
    ASSERT_EQ(allAIProviders.size(), 2U);
    EXPECT_EQ(allAIProviders[0].provider, AIProvider::claudeCLI);
    EXPECT_EQ(allAIProviders[1].provider, AIProvider::geminiCLI);
}

TEST(AIProviderTest, EachHasItsFixedProperties)
{
    const auto& claude = info(AIProvider::claudeCLI);
    EXPECT_EQ(claude.rawValue, "claudeCLI");
    EXPECT_EQ(claude.displayName, "Claude (Anthropic) CLI");
    EXPECT_EQ(claude.executableName, "claude");
    EXPECT_THAT(claude.leadingArguments, ElementsAre("-p", "--strict-mcp-config"));
    const auto& gemini = info(AIProvider::geminiCLI);
    EXPECT_EQ(gemini.rawValue, "geminiCLI");
    EXPECT_EQ(gemini.displayName, "Gemini CLI");
    EXPECT_EQ(gemini.executableName, "gemini");
    EXPECT_THAT(gemini.leadingArguments, ElementsAre("--skip-trust", "-p"));
}

TEST(AIProviderTest, RawValuesAreComparedWithTheirCase)
{
    EXPECT_EQ(aiProviderFromRawValue("claudeCLI"), AIProvider::claudeCLI);
    EXPECT_EQ(aiProviderFromRawValue("geminiCLI"), AIProvider::geminiCLI);
    for (const auto* other : {"", "GeminiCLI", "claude", "claudeCLI "}) {
        EXPECT_EQ(aiProviderFromRawValue(other), std::nullopt) << other;
    }
}

}  // namespace
}  // namespace sonvara::test
