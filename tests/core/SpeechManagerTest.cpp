// From a reported track to a spoken line.
#include "SpeechManagerFixture.h"

#include <gmock/gmock.h>

#include <chrono>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string skipped = "Skipping announcement — same album playthrough.";

using SpeechManagerTest = SpeechManagerFixture;

TEST_F(SpeechManagerTest, ANewTrackIsSpokenRecordedAndLoggedInPublic)
{
    reportFull("Song 1", "Artist A", "Album A", true, "Music");
    desktop.time.run();
    ASSERT_EQ(desktop.voice.lines.size(), 1U);
    const auto line = desktop.voice.lines[0].utterance.line;
    EXPECT_THAT(line, EndsWith(" Song 1 by Artist A, from Album A. One of your favorites!"));
    EXPECT_EQ(log->lastChat.get(), line);
    ASSERT_EQ(log->entries.get().size(), 1U);
    EXPECT_EQ(log->entries.get()[0]->message, "Spoke: " + line);
    EXPECT_EQ(desktop.systemLog.messages.back().published, "Announcing: " + line);
}

TEST_F(SpeechManagerTest, TheUtteranceHasTheVoiceOfTheCurrentLanguageAndTheUsualRate)
{
    desktop.voice.languageCode = "de-DE";
    desktop.voice.voice = SpeechVoice{"Anna"};
    report("Song 1");
    desktop.time.run();
    ASSERT_TRUE(desktop.voice.lines[0].utterance.voice);
    EXPECT_EQ(desktop.voice.lines[0].utterance.voice->identifier, "Anna");
    EXPECT_EQ(desktop.voice.lines[0].utterance.rate, 0.5);
}

TEST_F(SpeechManagerTest, ALanguageWithoutAVoiceIsLeftToTheSystemsDefault)
{
    desktop.voice.voice.reset();
    report("Song 1");
    desktop.time.run();
    EXPECT_FALSE(desktop.voice.lines[0].utterance.voice);
}

TEST_F(SpeechManagerTest, TheSameTrackReportedAgainDoesNothing)
{
    report("Song 1");
    desktop.time.run();
    const auto messages = desktop.systemLog.messages.size();
    const auto stops = desktop.voice.stops;
    for (int i = 0; i < 20; ++i) {
        report("Song 1");
        desktop.time.advance(3s);
    }
    EXPECT_EQ(desktop.voice.lines.size(), 1U);
    EXPECT_EQ(desktop.systemLog.messages.size(), messages);
    EXPECT_EQ(desktop.voice.stops, stops);
}

TEST_F(SpeechManagerTest, AnEmptyTitleDoesNothingAndIsNotRemembered)
{
    report("Song 1");
    report("");
    report("Song 1");
    desktop.time.run();
    EXPECT_EQ(desktop.voice.lines.size(), 1U);
}

TEST_F(SpeechManagerTest, APauseCutsTheLineAtOnceAndRestoresTheVolume)
{
    report("Song 1");
    desktop.time.run();
    stop();
    desktop.time.run();
    EXPECT_FALSE(desktop.voice.isSpeaking());
    EXPECT_EQ(desktop.voice.lines[0].ending, FakeVoice::Ending::cancelled);
    EXPECT_EQ(volume(), 100);
}

TEST_F(SpeechManagerTest, AResumeOfTheSameTrackIsQuiet)
{
    report("Song 1");
    desktop.time.run();
    stop();
    report("Song 1");
    desktop.time.run();
    EXPECT_EQ(desktop.voice.lines.size(), 1U);
}

TEST_F(SpeechManagerTest, ANewTrackSilencesTheLineOfThePreviousOne)
{
    report("Song 1");
    desktop.time.run();
    report("Song 2");
    desktop.time.run();
    ASSERT_EQ(desktop.voice.lines.size(), 2U);
    EXPECT_EQ(desktop.voice.lines[0].ending, FakeVoice::Ending::cancelled);
    EXPECT_THAT(desktop.voice.current(), HasSubstr("Song 2"));
}

TEST_F(SpeechManagerTest, AnAlbumPlayedStraightThroughIsAnnouncedOnce)
{
    for (const auto* track : {"Song 1", "Song 2", "Song 3"}) {
        reportFull(track, "Artist A", "Album A", false, "Music");
        desktop.time.run();
        reportFull(track, "Artist A", "Album A", false, "Music");
        desktop.time.run();
    }
    EXPECT_EQ(desktop.voice.lines.size(), 1U);
    EXPECT_THAT(debugMessages(), testing::Contains(skipped).Times(2));
}

TEST_F(SpeechManagerTest, ASkippedTrackStillSilencesAndIsWhatTheNextOneIsComparedWith)
{
    reportFull("Song 1", "Artist A", "Album A", false, "Music");
    desktop.time.run();
    reportFull("Song 2", "Artist A", "Album A", false, "Music");
    desktop.time.run();
    EXPECT_FALSE(desktop.voice.isSpeaking());
    reportFull("Song 1", "Artist B", "Album B", false, "Music");
    desktop.time.run();
    EXPECT_EQ(desktop.voice.lines.size(), 2U) << "Song 1 is new again: the last track was Song 2";
}

TEST_F(SpeechManagerTest, WithAnnouncementsOffATrackStillStopsSpeechAndIsRemembered)
{
    report("Song 1");
    desktop.time.run();
    desktop.defaults.values["announcementsEnabled"] = false;
    reportFull("Song 2", "Artist A", "Album A", false, "Music");
    desktop.time.run();
    EXPECT_FALSE(desktop.voice.isSpeaking());
    desktop.defaults.values["announcementsEnabled"] = true;
    reportFull("Song 2", "Artist A", "Album A", false, "Music");
    reportFull("Song 3", "Artist A", "Album A", false, "Music");
    desktop.time.run();
    EXPECT_EQ(desktop.voice.lines.size(), 1U) << "Song 3 goes on with the album of Song 2";
    EXPECT_THAT(debugMessages(), testing::Contains(skipped).Times(1));
}

TEST_F(SpeechManagerTest, WithAnnouncementsOffASkipIsNotLogged)
{
    desktop.defaults.values["announcementsEnabled"] = false;
    reportFull("Song 1", "Artist A", "Album A", false, "Music");
    reportFull("Song 2", "Artist A", "Album A", false, "Music");
    desktop.time.run();
    EXPECT_THAT(debugMessages(), IsEmpty());
}

TEST_F(SpeechManagerTest, TheDefaultsOfTheSettingsAreSpeakDuckAndNoAI)
{
    report("Song 1");
    desktop.time.run();
    EXPECT_TRUE(desktop.voice.isSpeaking());
    EXPECT_EQ(volume(), 35);
    EXPECT_THAT(desktop.launcher.children, IsEmpty());
}

TEST_F(SpeechManagerTest, SettingsAreReadAfreshForEachTrack)
{
    desktop.defaults.values["announcementsEnabled"] = false;
    report("Song 1");
    desktop.time.run();
    EXPECT_FALSE(desktop.voice.isSpeaking());
    desktop.defaults.values["announcementsEnabled"] = true;
    report("Song 2");
    desktop.time.run();
    EXPECT_TRUE(desktop.voice.isSpeaking());
}

TEST_F(SpeechManagerTest, TitlesThatAreEquivalentAreTheSameTrack)
{
    report("Caf\u00e9");
    report("Cafe\u0301");
    desktop.time.run();
    EXPECT_EQ(desktop.voice.lines.size(), 1U);
    EXPECT_TRUE(desktop.voice.isSpeaking()) << "the line about it goes on";
}

}  // namespace
}  // namespace sonvara::test
