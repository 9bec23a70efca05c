// The offline intro line.
#include "speech/DJStyle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

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

/// So many lines that two who draw for themselves never get the same ones.
std::string manyLines()
{
    std::string lines;
    for (int i = 0; i < 100; ++i) lines += DJ::offlineIntro("Song 1", "", "", false) + '\n';
    return lines;
}

std::string readToEnd(int descriptor)
{
    std::string all;
    std::array<char, 4096> part{};
    for (ssize_t size = 0; (size = ::read(descriptor, part.data(), part.size())) > 0;)
        all.append(part.data(), static_cast<std::size_t>(size));
    return all;
}

TEST(OfflineIntroTest, NothingIsRememberedFromOneDrawToTheNext)
{
    (void)manyLines();
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    // A copy of this process: whatever a generator of our own had kept would be the same in both.
    const auto copy = ::fork();
    ASSERT_GE(copy, 0);
    if (copy == 0) {
        const auto lines = manyLines();
        ::_exit(::write(ends[1], lines.data(), lines.size()) == static_cast<ssize_t>(lines.size()) ? 0 : 1);
    }
    ::close(ends[1]);
    const auto theirs = readToEnd(ends[0]);
    ::close(ends[0]);
    int status = 0;
    ASSERT_EQ(::waitpid(copy, &status, 0), copy);
    EXPECT_EQ(status, 0);
    const auto ours = manyLines();
    EXPECT_NE(ours, theirs);
}

TEST(OfflineIntroTest, HasSixOpeners)
{
    EXPECT_THAT(DJ::openers, testing::ElementsAre("Now playing", "Up next", "Here we go with", "Spinning up",
                                                  "Coming your way", "You're listening to"));
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
