// What is written down about players to which their volume is owed.
#include "volume/LoweredNotes.h"

#include <gtest/gtest.h>

#include <locale>
#include <string>

namespace sonvara::test {
namespace {

constexpr int today = 20'000;
constexpr const char* heading = "Players that Sonvara has lowered: volume, lowered volume, day, player\n";

TEST(LoweredNotesTest, AreReadBackAsTheyWereWritten)
{
    const LoweredNotes notes{{"org.mpris.MediaPlayer2.vlc", {1.0 / 3, 0.12}, 19'990},
                             {"a player with blanks", {1.0, 0.35}, today}};
    EXPECT_EQ(parseLoweredNotes(format(notes), today + 1), notes);
    EXPECT_EQ(parseLoweredNotes(format({}), today), LoweredNotes());
}

TEST(LoweredNotesTest, APersonCanReadThem)
{
    EXPECT_EQ(format({{"org.mpris.MediaPlayer2.vlc", {0.58, 0.2}, today}}),
              "Players that Sonvara has lowered: volume, lowered volume, day, player\n"
              "0.58 0.2 20000 org.mpris.MediaPlayer2.vlc\n");
}

TEST(LoweredNotesTest, ThoseOfVersionOneAreRead)
{
    EXPECT_EQ(parseLoweredNotes("Players that Sonvara has lowered: volume, lowered volume, program\n"
                                "80 28 org.mpris.MediaPlayer2.vlc.instance4711\n",
                                today),
              (LoweredNotes{{"org.mpris.MediaPlayer2.vlc", {0.8, 0.28}, today}}));
}

TEST(LoweredNotesTest, AreWrittenInSixDigitsWhereTheseAreTheNumber)
{
    EXPECT_NE(format({{"vlc", {0.123456, 0}, 1}}).find("\n0.123456 0 1 vlc\n"), std::string::npos);
    EXPECT_NE(format({{"vlc", {0.2345678, 0}, 1}}).find("\n0.23456779999999999 0 1 vlc\n"),
              std::string::npos);
}

TEST(LoweredNotesTest, AreTheSameInEveryLanguage)
{
    struct Commas final : std::numpunct<char> {
        [[nodiscard]] char do_decimal_point() const override { return ','; }
    };
    const LoweredNotes notes{{"vlc", {0.58, 0.2}, today}};
    const auto text = format(notes);
    const auto before = std::locale::global(std::locale(std::locale::classic(), new Commas));
    const auto written = format(notes);
    const auto read = parseLoweredNotes(text, today);
    std::locale::global(before);
    EXPECT_EQ(written, text);
    EXPECT_EQ(read, notes);
}

TEST(LoweredNotesTest, MayHoldTheLargestNumbersAndNoLarger)
{
    const auto isRead = [](const std::string& line) {
        return parseLoweredNotes(heading + line, today).has_value();
    };
    EXPECT_TRUE(isRead("100 100 1000000 vlc\n"));
    EXPECT_TRUE(isRead("0 0 0 vlc\n"));
    EXPECT_FALSE(isRead("100.1 1 1 vlc\n"));
    EXPECT_FALSE(isRead("1 1 1000001 vlc\n"));
    const std::string digits(30, '0');
    EXPECT_TRUE(isRead("0." + digits + " 1 1 vlc\n")) << "32 signs";
    EXPECT_FALSE(isRead("0.0" + digits + " 1 1 vlc\n"));
    std::string many;
    for (int i = 0; i < 100; ++i) many += "1 0.35 20000 vlc\n";
    EXPECT_TRUE(isRead(many));
}

TEST(LoweredNotesTest, ThoseOfVersionOneHoldPercents)
{
    const auto isRead = [](const std::string& line) {
        return parseLoweredNotes("Players that Sonvara has lowered: volume, lowered volume, program\n" + line,
                                 today)
            .has_value();
    };
    EXPECT_TRUE(isRead("100 100 vlc\n"));
    EXPECT_FALSE(isRead("101 1 vlc\n"));
    EXPECT_FALSE(isRead("1 101 vlc\n"));
    EXPECT_FALSE(isRead("1 0.5 vlc\n"));
    EXPECT_FALSE(isRead("1 1 \n"));
}

TEST(LoweredNotesTest, WithoutTheirHeadingOrTheirEndAreNothing)
{
    const std::string line = "1 0.35 20000 vlc\n";
    EXPECT_EQ(parseLoweredNotes(std::string(std::string(heading).size(), '\n') + line, today), std::nullopt);
    EXPECT_EQ(parseLoweredNotes(heading + line + "1 0.35 20000 vl", today), std::nullopt);
    EXPECT_EQ(parseLoweredNotes(heading + std::string("7\n"), today), std::nullopt) << "one number for all";
}

TEST(LoweredNotesTest, WhatIsNotAsItIsWrittenIsNothing)
{
    for (const std::string text :
         {"", "x", "1 0.35 20000 vlc", "1 0.35 20000 \n", "1 0.35 vlc\n", "-1 0.35 20000 vlc\n",
          "1 101 20000 vlc\n", "nan 0.35 20000 vlc\n", "inf 0.35 20000 vlc\n", " 1 0.35 20000 vlc\n",
          "1  0.35 20000 vlc\n", "1 0,35 20000 vlc\n", "1 0.35 2e4 vlc\n", "1 0.35 -5 vlc\n",
          "1 0.35 99999999999 vlc\n", "1x 0.35 20000 vlc\n"}) {
        EXPECT_EQ(parseLoweredNotes(text, today), std::nullopt) << text;
        if (text.empty()) continue;
        EXPECT_EQ(parseLoweredNotes(heading + text, today), std::nullopt) << text;
    }
    std::string many = heading;
    for (int i = 0; i < 101; ++i) many.append("1 0.35 20000 vlc\n");
    EXPECT_EQ(parseLoweredNotes(many, today), std::nullopt);
}

TEST(LoweredNotesTest, AStableNameIsWithoutTheInstance)
{
    EXPECT_EQ(stableName("org.mpris.MediaPlayer2.vlc"), "org.mpris.MediaPlayer2.vlc");
    EXPECT_EQ(stableName("org.mpris.MediaPlayer2.vlc.instance123"), "org.mpris.MediaPlayer2.vlc");
    EXPECT_EQ(stableName("org.mpris.MediaPlayer2.chromium.instance1_2"), "org.mpris.MediaPlayer2.chromium");
    EXPECT_EQ(stableName("org.mpris.MediaPlayer2.vlc.instanceOf"), "org.mpris.MediaPlayer2.vlc.instanceOf");
    EXPECT_EQ(stableName("a.instance1234567890"), "a");
    EXPECT_EQ(stableName(".instance1"), ".instance1");
}

}  // namespace
}  // namespace sonvara::test
