// How a log message is put into the few formats that the system log is given.
#include "platform/macos/system/LogStretches.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

using Texts = std::array<std::string, 5>;

LogPiece hidden(const char* text)
{
    return Logger::hidden(text);
}

TEST(LogStretchesTest, JoinsPublicPieces)
{
    const LogStretches stretches({{"a"}, {"b"}, Logger::flag(true)});
    EXPECT_EQ(stretches.privateCount, 0U);
    EXPECT_EQ(stretches.texts, (Texts{"abtrue"}));
}

TEST(LogStretchesTest, KeepsAnEmptyMessage)
{
    EXPECT_EQ(LogStretches({}).privateCount, 0U);
}

TEST(LogStretchesTest, PutsOnePrivateStretchBetweenPublicOnes)
{
    const LogStretches stretches({{"by "}, hidden("x"), hidden("y"), {"!"}});
    EXPECT_EQ(stretches.privateCount, 1U);
    EXPECT_EQ(stretches.texts, (Texts{"by ", "xy", "!"}));
}

TEST(LogStretchesTest, PutsTwoPrivateStretchesBetweenPublicOnes)
{
    const LogStretches stretches({hidden("Music"), {": '"}, hidden("Song"), {"' (playing=true)"}});
    EXPECT_EQ(stretches.privateCount, 2U);
    EXPECT_EQ(stretches.texts, (Texts{"", "Music", ": '", "Song", "' (playing=true)"}));
}

TEST(LogStretchesTest, HidesMoreRatherThanLess)
{
    const LogStretches stretches(
        {hidden("a"), {"-"}, hidden("b"), {"-"}, hidden("c"), {"-"}, hidden("d"), {"."}});
    EXPECT_EQ(stretches.privateCount, 2U);
    EXPECT_EQ(stretches.texts, (Texts{"", "a", "-", "b-c-d", "."}));
}

}  // namespace
}  // namespace sonvara::test
