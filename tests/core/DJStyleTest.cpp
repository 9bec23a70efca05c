// The offline intro line.
#include "speech/DJStyle.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace sonvara::test {
namespace {

TEST(OfflineIntroTest, NamesTrackArtistAndAlbum)
{
    EXPECT_EQ(DJ::offlineIntro("Song 1", "Artist A", "Album A", false, "Up next"),
              "Up next Song 1 by Artist A, from Album A.");
}

TEST(OfflineIntroTest, ComplimentsAFavorite)
{
    EXPECT_EQ(DJ::offlineIntro("Song 1", "Artist A", "Album A", true, "Now playing"),
              "Now playing Song 1 by Artist A, from Album A. One of your favorites!");
}

TEST(OfflineIntroTest, LeavesOutWhatIsEmpty)
{
    EXPECT_EQ(DJ::offlineIntro("Song 1", "", "Album A", false, "Spinning up"),
              "Spinning up Song 1, from Album A.");
    EXPECT_EQ(DJ::offlineIntro("Song 1", "Artist A", "", false, "Coming your way"),
              "Coming your way Song 1 by Artist A.");
    EXPECT_EQ(DJ::offlineIntro("Song 1", "", "", true, "Here we go with"),
              "Here we go with Song 1. One of your favorites!");
}

TEST(OfflineIntroTest, AnEmptyTitleLeavesABlankAndAFullStop)
{
    EXPECT_EQ(DJ::offlineIntro("", "", "", false, "Up next"), "Up next .");
}

TEST(OfflineIntroTest, ATitleThatEndsInAFullStopGetsASecondOne)
{
    EXPECT_EQ(DJ::offlineIntro("The End.", "", "", false, "Up next"), "Up next The End..");
}

TEST(OfflineIntroTest, BlanksAreKept)
{
    EXPECT_EQ(DJ::offlineIntro("Song", "  ", " ", false, "Up next"), "Up next Song by   , from  .");
}

TEST(OfflineIntroTest, AnEmptyOpenerGivesALineThatStartsWithABlank)
{
    EXPECT_EQ(DJ::offlineIntro("Song", "", "", false, ""), " Song.");
}

TEST(OfflineIntroTest, DrawsEachOpenerEquallyOften)
{
    constexpr int draws = 6000;
    std::map<std::string, int> counts;
    for (int i = 0; i < draws; ++i) {
        const auto line = DJ::offlineIntro("Song 1", "Artist A", "Album A", false);
        const auto rest = line.find(" Song 1 by Artist A, from Album A.");
        ASSERT_NE(rest, std::string::npos) << line;
        ++counts[line.substr(0, rest)];
    }
    ASSERT_EQ(counts.size(), DJ::openers.size());
    for (const auto opener : DJ::openers) {
        // Six standard deviations of a fair draw on either side.
        EXPECT_NEAR(counts[std::string(opener)], draws / 6.0, 174) << opener;
    }
}

}  // namespace
}  // namespace sonvara::test
