// From a player's notification, posted by another process, to a spoken line.
#include "AppTest.h"
#include "StripProbe.h"

#include <algorithm>
#include <cstdlib>

namespace sonvara::test {
namespace {

using Volumes = std::vector<int>;

class AnnouncementTest : public AppTest {
protected:
    void spotifyPlays(const std::string& title)
    {
        players_.set("Spotify", {true, true, title, "An Artist", "An Album of " + title});
        spotifyPosts("Playing", title, "An Artist", "An Album of " + title);
    }

    void spotifyPauses(const std::string& title)
    {
        players_.set("Spotify",
                     {true, false, title, "An Artist", "An Album of " + title, players_.volume("Spotify")});
        spotifyPosts("Paused", title, "An Artist", "An Album of " + title);
    }

    /// The core records the lowered volume on the main thread after it has been set. A notification and its
    /// poll, processes apart, take longer.
    void letTheDuckBeRecorded(const std::string& title)
    {
        const int before = players_.polls();
        spotifyPosts("Playing", title, "An Artist", "An Album of " + title);
        ASSERT_TRUE(eventually([&] { return players_.polls() >= before + 2; }));
    }

    /// The first so many volumes that players have been told, or those there are after all patience. One that was not
    /// seen to obey, as on a busy machine, is told the same again; and one that is home may be told so once more, past
    /// its neighbour.
    Volumes volumes(std::size_t count)
    {
        Volumes told;
        (void)eventually([&] {
            told = players_.volumesSet();
            told.erase(std::unique(told.begin(), told.end()), told.end());
            return told.size() >= count;
        });
        told.resize(std::min(told.size(), count));
        return told;
    }

    /// Failures that were logged, but for the icon that is asked for before it is drawn.
    static std::size_t countErrors()
    {
        const auto records = standins::takeLog();
        const auto isFailure = [](const auto& record) {
            return record.isError && record.category != "StatusBarController";
        };
        return static_cast<std::size_t>(std::count_if(records.begin(), records.end(), isFailure));
    }
};

TEST_F(AnnouncementTest, IsSpokenOverALoweredPlayerAndShown)
{
    standins::setVoices({.finishesAtOnce = false});
    launch();
    EXPECT_TRUE(eventually([] { return probe::statusImage()->isTemplate; })) << "once the icons are drawn";
    spotifyPlays("A Song");
    const auto spoken = lines(1).at(0);
    EXPECT_NE(spoken.line.find("A Song"), std::string::npos) << spoken.line;
    EXPECT_NE(spoken.line.find("An Artist"), std::string::npos) << spoken.line;
    EXPECT_EQ(spoken.voice, "voice.en-GB");
    EXPECT_EQ(spoken.rate, 0.5F);
    ASSERT_EQ(volumes(1), Volumes{28});
    EXPECT_TRUE(eventually([] { return !probe::statusImage()->isTemplate; }));
    EXPECT_TRUE(eventually([] { return probe::statusMenu().at(1).title == "A Song - An Artist"; }));
    EXPECT_TRUE(onMain(probe::statusMenu).at(3).isStyled);
    letTheDuckBeRecorded("A Song");
    standins::finishLine();
    EXPECT_EQ(volumes(2), (Volumes{28, 80}));
}

TEST_F(AnnouncementTest, OfASlowPlayerIsSpokenAtOnce)
{
    standins::setVoices({.finishesAtOnce = false});
    players_.hold();
    launch();
    spotifyPlays("A Song");
    EXPECT_EQ(lines(1).size(), 1U);
    EXPECT_TRUE(players_.volumesSet().empty());
    players_.release();
    EXPECT_EQ(volumes(1), Volumes{28});
}

TEST_F(AnnouncementTest, WithoutConsentIsSpokenWithoutLoweringAndNothingIsLogged)
{
    players_.deny(-1743);
    launch();
    spotifyPlays("A Song");
    EXPECT_EQ(lines(1).size(), 1U);
    const int before = players_.polls();
    EXPECT_TRUE(eventually([&] { return players_.polls() >= before + 4; }));
    EXPECT_TRUE(players_.volumesSet().empty());
    EXPECT_EQ(countErrors(), 0U);
    EXPECT_EQ(standins::spokenLines().size(), 1U);
}

TEST_F(AnnouncementTest, WithoutSpotifyOnTheMacAsksNobodyWhereItIs)
{
    standins::setInstalled({"Music"});
    standins::setVoices({.finishesAtOnce = false});
    start();
    players_.set("Music", {true, true, "A Song", "An Artist", "An Album"});
    EXPECT_NE(lines(1).at(0).line.find("A Song"), std::string::npos);
    ASSERT_EQ(volumes(1), Volumes{28});
}

// Its poll always ends as an error in the terms of the old one.
TEST_F(AnnouncementTest, OfAMusicFromMacOS14OnIsFoundByThePoll)
{
    players_.haveNewMusic();
    players_.set("Music", {true, true, "A Song", "An Artist", "An Album"});
    launch();
    EXPECT_NE(lines(1).at(0).line.find("A Song"), std::string::npos);
}

TEST_F(AnnouncementTest, IsSpokenWhileTheUserIsBeingAskedForConsent)
{
    standins::setVoices({.finishesAtOnce = false});
    standins::openConsentQuestion("Music");
    start();
    spotifyPlays("A Song");
    EXPECT_EQ(lines(1).size(), 1U);
    ASSERT_EQ(volumes(1), Volumes{28}) << "Spotify's consent is there";
    letTheDuckBeRecorded("A Song");
    standins::finishLine();
    EXPECT_EQ(volumes(2), (Volumes{28, 80}));
    standins::answerConsentQuestion();
}

TEST_F(AnnouncementTest, KeepsTheProgramAwakeAsLongAsAPlayerPlays)
{
    launch();
    EXPECT_FALSE(standins::isKeptAwake());
    spotifyPlays("A Song");
    EXPECT_TRUE(eventually(standins::isKeptAwake));
    spotifyPauses("A Song");
    EXPECT_TRUE(eventually([] { return !standins::isKeptAwake(); }));
}

TEST_F(AnnouncementTest, WithoutAVoiceIsSpokenByTheDefaultVoice)
{
    standins::setVoices({.languages = {}});
    launch();
    spotifyPlays("A Song");
    EXPECT_EQ(lines(1).at(0).voice, "");
}

TEST_F(AnnouncementTest, IsCutByAPauseAndTheVolumeReturns)
{
    standins::setVoices({.finishesAtOnce = false, .cutReport = standins::CutReport::none});
    launch();
    spotifyPlays("A Song");
    (void)lines(1);
    ASSERT_EQ(volumes(1), Volumes{28});
    letTheDuckBeRecorded("A Song");
    spotifyPauses("A Song");
    EXPECT_EQ(volumes(2), (Volumes{28, 80}));
}

// Before the core has recorded that the player is lowered.
TEST_F(AnnouncementTest, ThatAPauseCutsAtOnceLeavesNoPlayerLowered)
{
    standins::setVoices({.finishesAtOnce = false});
    players_.hold();
    launch();
    spotifyPlays("A Song");
    (void)lines(1);
    spotifyPauses("A Song");
    players_.release();
    const int before = players_.polls();
    ASSERT_TRUE(eventually([&] { return players_.polls() >= before + 4; }));
    EXPECT_EQ(players_.volume("Spotify"), 80);
}

TEST_F(AnnouncementTest, ThatTheUserTurnsUpMeanwhileStaysThere)
{
    standins::setVoices({.finishesAtOnce = false});
    launch();
    spotifyPlays("A Song");
    ASSERT_EQ(volumes(1), Volumes{28});
    const int before = players_.polls();
    players_.set("Spotify", {true, true, "A Song", "An Artist", "An Album of A Song", 60});
    ASSERT_TRUE(eventually([&] { return players_.polls() >= before + 6; }));
    standins::finishLine();
    const int after = players_.polls();
    ASSERT_TRUE(eventually([&] { return players_.polls() >= after + 2; }));
    EXPECT_EQ(players_.volumesSet(), Volumes{28});
}

TEST_F(AnnouncementTest, ThatAQuitCutsLeavesNoPlayerLowered)
{
    standins::setVoices({.finishesAtOnce = false});
    launch();
    spotifyPlays("A Song");
    ASSERT_EQ(volumes(1), Volumes{28});
    letTheDuckBeRecorded("A Song");
    quit([this] { EXPECT_EQ(players_.volumesSet(), (Volumes{28, 80})); });
}

TEST_F(AnnouncementTest, IsNoneWhileATestHarnessHostsTheApplication)
{
    ::setenv("XCTestConfigurationFilePath", "", 1);
    start();
    spotifyPlays("A Song");
    onMain([] {});
    EXPECT_EQ(players_.polls(), 0);
    EXPECT_FALSE(onMain(probe::hasStatusItem));
}

}  // namespace
}  // namespace sonvara::test
