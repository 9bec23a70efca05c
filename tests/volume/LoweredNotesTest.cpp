// What is written down about players to which their volume is owed.
#include "volume/LoweredNotes.h"

#include <gtest/gtest.h>

#include <string>

namespace sonvara::test {
namespace {

constexpr int today = 20'000;

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

TEST(LoweredNotesTest, WhatIsNotAsItIsWrittenIsNothing)
{
    const std::string heading = "Players that Sonvara has lowered: volume, lowered volume, day, player\n";
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
    EXPECT_EQ(stableName(".instance1"), ".instance1");
}

}  // namespace
}  // namespace sonvara::test
