// Records from notifications and poll outputs, and the choice among them.
#include "monitor/MusicMonitor.h"
#include "support/PlayerScripts.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace sonvara::test {
namespace {

Notification music(UserInfo info)
{
    return {musicNotification, std::move(info)};
}

NowPlaying record(const char* source, bool isPlaying, const char* name = "Song")
{
    return {name, "Artist", "Album", isPlaying, false, source};
}

TEST(ParseEventTest, APausedMusicTrackMarkedAsLovedKeepsItsMark)
{
    const auto event = MusicMonitor::parseEvent(music({{"Player State", std::string("Paused")},
                                                       {"Name", std::string("Song 1")},
                                                       {"Artist", std::string("Artist A")},
                                                       {"Album", std::string("Album A")},
                                                       {"Loved", true}}));
    ASSERT_TRUE(event);
    EXPECT_EQ(event->name, "Song 1");
    EXPECT_EQ(event->artist, "Artist A");
    EXPECT_EQ(event->album, "Album A");
    EXPECT_FALSE(event->isPlaying);
    EXPECT_TRUE(event->favorited);
    EXPECT_EQ(event->source, "Music");
}

TEST(ParseEventTest, AStoppedSpotifyWithoutATitleIsTheEmptyRecord)
{
    const auto event =
        MusicMonitor::parseEvent({spotifyNotification, UserInfo{{"Player State", std::string("Stopped")},
                                                                {"Artist", std::string("not read")},
                                                                {"Loved", true}}});
    ASSERT_TRUE(event);
    EXPECT_EQ(event->name, "");
    EXPECT_EQ(event->artist, "");
    EXPECT_EQ(event->album, "");
    EXPECT_FALSE(event->isPlaying);
    EXPECT_FALSE(event->favorited);
    EXPECT_EQ(event->source, "Spotify");
}

TEST(ParseEventTest, WithoutATitleOnlyAStopYieldsARecord)
{
    EXPECT_FALSE(MusicMonitor::parseEvent(music({{"Player State", std::string("Playing")}})));
    EXPECT_FALSE(MusicMonitor::parseEvent(music({{"Player State", std::string("stopped")}})));
    EXPECT_FALSE(MusicMonitor::parseEvent(music({})));
    EXPECT_FALSE(MusicMonitor::parseEvent({musicNotification, std::nullopt}));
}

TEST(ParseEventTest, PlayingIsComparedWithItsCase)
{
    for (const auto* state : {"playing", "PLAYING", "Playing ", ""}) {
        const auto event = MusicMonitor::parseEvent(
            music({{"Name", std::string("Song")}, {"Player State", std::string(state)}}));
        ASSERT_TRUE(event);
        EXPECT_FALSE(event->isPlaying) << state;
    }
    EXPECT_TRUE(MusicMonitor::parseEvent(
                    music({{"Name", std::string("Song")}, {"Player State", std::string("Playing")}}))
                    ->isPlaying);
}

TEST(ParseEventTest, AStopWithATitleIsARecordThatDoesNotPlay)
{
    const auto event = MusicMonitor::parseEvent(
        music({{"Name", std::string("Song")}, {"Player State", std::string("Stopped")}}));
    ASSERT_TRUE(event);
    EXPECT_EQ(event->name, "Song");
    EXPECT_FALSE(event->isPlaying);
}

TEST(ParseEventTest, ALovedValueThatIsATextIsNotLoved)
{
    EXPECT_FALSE(
        MusicMonitor::parseEvent(music({{"Name", std::string("Song")}, {"Loved", std::string("true")}}))
            ->favorited);
    EXPECT_FALSE(MusicMonitor::parseEvent(music({{"Name", std::string("Song")}, {"Loved", std::int64_t{1}}}))
                     ->favorited);
}

TEST(ParseEventTest, ValuesOfOtherTypesCountAsMissing)
{
    const auto event = MusicMonitor::parseEvent(music({{"Name", std::string("Song")},
                                                       {"Artist", std::int64_t{5}},
                                                       {"Album", true},
                                                       {"Player State", 1.0}}));
    ASSERT_TRUE(event);
    EXPECT_EQ(event->artist, "");
    EXPECT_EQ(event->album, "");
    EXPECT_FALSE(event->isPlaying);
    EXPECT_FALSE(MusicMonitor::parseEvent(
        music({{"Name", std::monostate{}}, {"Player State", std::string("Paused")}})));
}

TEST(ParseEventTest, AnyOtherNotificationCountsAsSpotifys)
{
    EXPECT_EQ(MusicMonitor::parseEvent({"another.player", UserInfo{{"Name", std::string("Song")}}})->source,
              "Spotify");
}

TEST(PickTest, APlayingPlayerWinsOverAPausedOne)
{
    EXPECT_EQ(MusicMonitor::pick(record("Music", false), record("Spotify", true), std::nullopt)->source,
              "Spotify");
    EXPECT_EQ(MusicMonitor::pick(record("Music", true), record("Spotify", false), std::nullopt)->source,
              "Music");
}

TEST(PickTest, MusicWinsWhenBothPlayOrBothPause)
{
    EXPECT_EQ(MusicMonitor::pick(record("Music", true), record("Spotify", true), std::nullopt)->source,
              "Music");
    EXPECT_EQ(MusicMonitor::pick(record("Music", false), record("Spotify", false), std::nullopt)->source,
              "Music");
}

TEST(PickTest, ASinglePausedPlayerIsChosenBeforeTheFallback)
{
    EXPECT_EQ(MusicMonitor::pick(std::nullopt, record("Spotify", false), record("Music", true))->source,
              "Spotify");
}

TEST(PickTest, TheFallbackIsTakenAsItIsWhenNeitherPollGaveAnything)
{
    EXPECT_EQ(MusicMonitor::pick(std::nullopt, std::nullopt, record("Music", true, "Last"))->name, "Last");
    EXPECT_EQ(MusicMonitor::pick(std::nullopt, std::nullopt, record("Spotify", false, ""))->name, "");
    EXPECT_FALSE(MusicMonitor::pick(std::nullopt, std::nullopt, std::nullopt));
}

TEST(PickTest, APlayerThatHasGoneNoLongerPlays)
{
    auto gone = std::optional(record("Music", true));
    gone.reset();
    EXPECT_EQ(MusicMonitor::pick(gone, record("Spotify", true), std::nullopt)->source, "Spotify");
    EXPECT_EQ(MusicMonitor::pick(record("Music", false), gone, std::nullopt)->source, "Music");
}

TEST(ParsePollOutputTest, TakesThePartsByPositionAndTrimsThem)
{
    const auto record =
        MusicMonitor::parsePollOutput("Music", " Song \n||\tArtist||\u3000Album|| true ||true\r\n", 5);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->name, "Song");
    EXPECT_EQ(record->artist, "Artist");
    EXPECT_EQ(record->album, "Album");
    EXPECT_TRUE(record->isPlaying);
    EXPECT_TRUE(record->favorited);
    EXPECT_EQ(record->source, "Music");
}

TEST(ParsePollOutputTest, ATitleOfSpacesWithoutWidthIsEmpty)
{
    const auto record =
        MusicMonitor::parsePollOutput("Music", "\u200b||\u200bArtist\u200b||\u200b||true||true", 5);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->name, "");
    EXPECT_EQ(record->artist, "Artist");
    EXPECT_EQ(record->album, "");
}

TEST(ParsePollOutputTest, ATitleWithTheSeparatorShiftsTheOtherParts)
{
    const auto record = MusicMonitor::parsePollOutput("Spotify", "A||B||Artist||Album||true", 4);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->name, "A");
    EXPECT_EQ(record->artist, "B");
    EXPECT_EQ(record->album, "Artist");
    EXPECT_FALSE(record->isPlaying);
}

TEST(ParsePollOutputTest, TruthValuesAreComparedWithTheirCase)
{
    EXPECT_FALSE(MusicMonitor::parsePollOutput("Music", "a||b||c||True||TRUE", 5)->isPlaying);
    EXPECT_FALSE(MusicMonitor::parsePollOutput("Music", "a||b||c||true||TRUE", 5)->favorited);
}

TEST(ParsePollOutputTest, ASpotifyRecordIsNeverLoved)
{
    EXPECT_FALSE(MusicMonitor::parsePollOutput("Spotify", "a||b||c||true||true", 4)->favorited);
}

TEST(ParsePollOutputTest, TooFewPartsGiveNothing)
{
    EXPECT_FALSE(MusicMonitor::parsePollOutput("Music", "a||b||c||true", 5));
    EXPECT_FALSE(MusicMonitor::parsePollOutput("Spotify", "", 4));
}

}  // namespace
}  // namespace sonvara::test
