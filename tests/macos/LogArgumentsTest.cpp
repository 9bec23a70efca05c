// How a log message is put into the few formats that the system log is given.
#include "platform/macos/system/LogArguments.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

using Texts = std::array<std::string, 5>;

LogPiece hidden(const char* text)
{
    return Logger::hidden(text);
}

TEST(LogArgumentsTest, JoinsPublicPieces)
{
    const LogArguments arguments({{"a"}, {"b"}, Logger::flag(true)});
    EXPECT_EQ(arguments.privateCount, 0U);
    EXPECT_EQ(arguments.texts, (Texts{"abtrue"}));
}

TEST(LogArgumentsTest, KeepsAnEmptyMessage)
{
    EXPECT_EQ(LogArguments({}).privateCount, 0U);
}

TEST(LogArgumentsTest, PutsOnePrivateArgumentBetweenPublicOnes)
{
    const LogArguments arguments({{"by "}, hidden("x"), hidden("y"), {"!"}});
    EXPECT_EQ(arguments.privateCount, 1U);
    EXPECT_EQ(arguments.texts, (Texts{"by ", "xy", "!"}));
}

TEST(LogArgumentsTest, PutsTwoPrivateArgumentsBetweenPublicOnes)
{
    const LogArguments arguments({hidden("Music"), {": '"}, hidden("Song"), {"' (playing=true)"}});
    EXPECT_EQ(arguments.privateCount, 2U);
    EXPECT_EQ(arguments.texts, (Texts{"", "Music", ": '", "Song", "' (playing=true)"}));
}

TEST(LogArgumentsTest, HidesMoreRatherThanLess)
{
    const LogArguments arguments(
        {hidden("a"), {"-"}, hidden("b"), {"-"}, hidden("c"), {"-"}, hidden("d"), {"."}});
    EXPECT_EQ(arguments.privateCount, 2U);
    EXPECT_EQ(arguments.texts, (Texts{"", "a", "-", "b-c-d", "."}));
}

}  // namespace
}  // namespace sonvara::test
