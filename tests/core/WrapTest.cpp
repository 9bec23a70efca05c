// The DJ's last words, broken into lines for the menu.
#include "ui/StatusBarController.h"

#include <gtest/gtest.h>

#include <string>

namespace sonvara::test {
namespace {

TEST(WrapTest, BreaksAtBlanksAndJoinsWithLineFeeds)
{
    EXPECT_EQ(StatusBarController::wrap("a b", 3), "a b");
    EXPECT_EQ(StatusBarController::wrap("a b", 2), "a\nb");
    EXPECT_EQ(StatusBarController::wrap("one two three", 7), "one two\nthree");
    EXPECT_EQ(StatusBarController::wrap("a b c d", 5), "a b c\nd") << "the blanks count";
    EXPECT_EQ(StatusBarController::wrap("aaa bbb c d", 3), "aaa\nbbb\nc d") << "each line is counted afresh";
}

TEST(WrapTest, AnEmptyTextOrOneOfBlanksIsEmpty)
{
    EXPECT_EQ(StatusBarController::wrap("", 40), "");
    EXPECT_EQ(StatusBarController::wrap("     ", 40), "");
}

TEST(WrapTest, RunsOfBlanksCountAsOneBreakAndOuterOnesVanish)
{
    EXPECT_EQ(StatusBarController::wrap("  a   b  ", 40), "a b");
}

TEST(WrapTest, ALongWordStandsAloneUnbroken)
{
    const std::string word(60, 'x');
    EXPECT_EQ(StatusBarController::wrap(word, 40), word);
    EXPECT_EQ(StatusBarController::wrap("a " + word + " b", 40), "a\n" + word + "\nb");
}

TEST(WrapTest, TabsAndLineFeedsStayInsideTheirWord)
{
    EXPECT_EQ(StatusBarController::wrap("a\tb c\nd", 3), "a\tb\nc\nd");
}

TEST(WrapTest, WidthIsCountedInUserPerceivedCharacters)
{
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    EXPECT_EQ(StatusBarController::wrap(family + " " + family, 3), family + " " + family);
    EXPECT_EQ(StatusBarController::wrap(family + " " + family, 2), family + "\n" + family);
}

}  // namespace
}  // namespace sonvara::test
