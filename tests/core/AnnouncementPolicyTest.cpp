// Which track changes are announced.
#include "speech/AnnouncementPolicy.h"

#include <gtest/gtest.h>

#include <ostream>

namespace sonvara::test {
namespace {

struct Texts {
    const char* title = "";
    const char* artist = "";
    const char* album = "";
};

struct Case {
    const char* behaviour;
    Texts reported;
    Texts last;
    bool announced;
};

void PrintTo(const Case& c, std::ostream* out)
{
    *out << c.behaviour;
}

class AnnouncementPolicyTest : public testing::TestWithParam<Case> {};

TEST_P(AnnouncementPolicyTest, Decides)
{
    const auto& [behaviour, reported, last, announced] = GetParam();
    EXPECT_EQ(AnnouncementPolicy::shouldAnnounce(reported.title, reported.artist, reported.album, last.title,
                                                 last.artist, last.album),
              announced)
        << behaviour;
}

constexpr Texts song1{"Song 1", "Artist A", "Album A"};

INSTANTIATE_TEST_SUITE_P(
    Table, AnnouncementPolicyTest,
    testing::Values(
        Case{"EmptyTitleIsRefused", {"", "Artist A", "Album A"}, song1, false},
        Case{"EmptyTitleIsRefusedAtStart", {"", "Artist A", "Album A"}, {}, false},
        Case{"ResumeIsQuiet", song1, song1, false},
        Case{"SameTitleByAnotherArtistIsTheSameTrack", {"Song 1", "Artist B", "Album B"}, song1, false},
        Case{"AlbumPlayedStraightThroughIsQuiet", {"Song 2", "Artist A", "Album A"}, song1, false},
        Case{"WithoutAlbumEveryTitleIsAnnounced",
             {"Song 2", "Artist A", ""},
             {"Song 1", "Artist A", ""},
             true},
        Case{"CompilationIsAnnounced", {"Song 2", "Artist B", "Album A"}, song1, true},
        Case{
            "AlbumDiffersInCase", {"Song 2", "Artist A", "Album A"}, {"Song 1", "Artist A", "album a"}, true},
        Case{"FirstTrackAfterStart", song1, {}, true},
        Case{"TitleInOtherCaseIsAnotherTitleOfTheSameAlbum", {"song 1", "Artist A", "Album A"}, song1, false},
        Case{"TrailingBlankMakesAnotherTitle", {"Song 1 ", "Artist A", "Album B"}, song1, true},
        Case{"BlankTitleIsNotEmpty", {" ", "Artist A", "Album B"}, song1, true},
        Case{"BlankAlbumIsAnAlbum", {"Song 2", "Artist A", " "}, {"Song 1", "Artist A", " "}, false},
        Case{"EquivalentTitlesAreTheSameTrack", {"Caf\u00e9", "B", "B"}, {"Cafe\u0301", "A", "A"}, false},
        Case{"EquivalentAlbumsAndArtistsAreTheSame",
             {"2", "Bj\u00f6rk", "\u00c6\u0301"},
             {"1", "Bjo\u0308rk", "\u01fc"},
             false}),
    [](const auto& instance) { return instance.param.behaviour; });

}  // namespace
}  // namespace sonvara::test
