// The line that an AI tool makes of a track, from the request to the voice.
#include "SpeechManagerFixture.h"
#include "ai/AIDJ.h"

#include <gmock/gmock.h>

#include <chrono>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

const std::string suppressed = "Suppressed announcement — superseded by a newer track or a stop.";

class AnnouncementByAITest : public SpeechManagerFixture {
protected:
    void useAI(VirtualTime::Duration takes, const std::string& line)
    {
        desktop.defaults.values["aiIntros"] = true;
        desktop.files.executables = {"/usr/bin/claude"};
        desktop.launcher.behaviour.output = line + "\n";
        desktop.launcher.behaviour.runsFor = takes;
    }
};

TEST_F(AnnouncementByAITest, AnAILineIsSpokenInPlaceOfTheOfflineLine)
{
    useAI(2s, "Here comes a great one.");
    report("Song 1");
    desktop.time.advance(1999ms);
    EXPECT_FALSE(desktop.voice.isSpeaking());
    desktop.time.advance(1ms);
    EXPECT_EQ(desktop.voice.current(), "Here comes a great one.");
    EXPECT_EQ(log->lastChat.get(), "Here comes a great one.");
}

TEST_F(AnnouncementByAITest, TheToolIsAskedAboutTheWholeTrack)
{
    useAI(2s, "A line.");
    for (const bool isFavorite : {true, false}) {
        const std::string track = isFavorite ? "Song 1" : "Song 2";
        reportFull(track, "Artist A", "Album of " + track, isFavorite, "Music");
        desktop.time.advance(2s);
        EXPECT_EQ(desktop.launcher.children.back()->setup.arguments.back(),
                  AIDJ::buildPrompt(track, "Artist A", "Album of " + track, isFavorite));
    }
}

TEST_F(AnnouncementByAITest, TheOfflineLineOfAFailureIsThatOfTheWholeTrack)
{
    useAI(2s, "");
    reportFull("Song 1", "Artist A", "Album A", true, "Spotify");
    desktop.time.advance(2s);
    EXPECT_THAT(desktop.voice.current(),
                EndsWith(" Song 1 by Artist A, from Album A. One of your favorites!"));
    EXPECT_THAT(volumeCommands(), ElementsAre("Spotify?", "Spotify=35"));
}

TEST_F(AnnouncementByAITest, ALineThatIsOutstandingWhenTheDJIsMutedIsStillSpoken)
{
    useAI(10s, "Asked for before.");
    report("Song 1");
    desktop.time.advance(4s);
    desktop.defaults.values["announcementsEnabled"] = false;
    desktop.time.advance(6s);
    EXPECT_EQ(desktop.voice.current(), "Asked for before.");
}

TEST_F(AnnouncementByAITest, AnAIFailureEndsInTheOfflineLine)
{
    useAI(2s, "");
    desktop.launcher.behaviour.exitStatus = 1;
    report("Song 1");
    desktop.time.advance(2s);
    EXPECT_THAT(desktop.voice.current(), EndsWith("Song 1 by Artist of Song 1, from Album of Song 1."));
}

TEST_F(AnnouncementByAITest, TheAIRequestStartsInALaterTurn)
{
    useAI(2s, "Line.");
    desktop.time.post([this] {
        manager->speak("Song 1", "Artist", "Album", false, "Music");
        EXPECT_EQ(desktop.time.postedQualities().size(), 0U);
    });
    desktop.time.run();
    EXPECT_GT(desktop.time.postedQualities().size(), 0U);
}

TEST_F(AnnouncementByAITest, ANewTrackMakesAnOutstandingAILineStale)
{
    useAI(10s, "About the first.");
    report("Song 1");
    desktop.time.advance(4s);
    desktop.launcher.behaviour.output = "About the second.\n";
    report("Song 2");
    desktop.time.advance(20s);
    ASSERT_EQ(desktop.voice.lines.size(), 1U);
    EXPECT_EQ(desktop.voice.current(), "About the second.");
    EXPECT_THAT(debugMessages(), ElementsAre(suppressed, "Announcing: About the second."));
}

TEST_F(AnnouncementByAITest, AStopMakesAnOutstandingAILineStale)
{
    useAI(10s, "Too late.");
    report("Song 1");
    desktop.time.advance(4s);
    stop();
    desktop.time.advance(20s);
    EXPECT_THAT(desktop.voice.lines, IsEmpty());
    EXPECT_EQ(log->lastChat.get(), "") << "a suppressed line is not recorded";
    EXPECT_THAT(volumeCommands(), IsEmpty()) << "nor is the player lowered for it";
    EXPECT_THAT(debugMessages(), ElementsAre(suppressed));
}

TEST_F(AnnouncementByAITest, AManagerThatIsGoneWhenItsAIRequestEndsSpeaksNothing)
{
    useAI(10s, "Nobody is here.");
    report("Song 1");
    desktop.time.advance(1s);
    const std::weak_ptr<SpeechManager> weak = manager;
    manager.reset();
    EXPECT_TRUE(weak.expired()) << "a slow tool does not keep the manager alive";
    desktop.time.advance(20s);
    EXPECT_THAT(desktop.voice.lines, IsEmpty());
}

TEST_F(AnnouncementByAITest, AManagerThatGoesBetweenTheToolsLineAndItsTurnSpeaksNothing)
{
    useAI(10s, "Nobody is here.");
    report("Song 1");
    desktop.time.run();
    const auto timer = desktop.time.scheduleTimer(10s, [this] { manager.reset(); });
    desktop.time.advance(10s);
    EXPECT_EQ(log->entries.get().size(), 2U) << "the tool's line has come";
    EXPECT_THAT(desktop.voice.lines, IsEmpty());
}

TEST_F(AnnouncementByAITest, AManagerThatIsGoneBeforeItsAITaskRunsAsksNoTool)
{
    useAI(10s, "Nobody is here.");
    desktop.time.post([this] {
        manager->speak("Song 1", "Artist", "Album", false, "Music");
        manager.reset();
    });
    desktop.time.advance(20s);
    EXPECT_THAT(desktop.launcher.children, IsEmpty());
}

}  // namespace
}  // namespace sonvara::test
