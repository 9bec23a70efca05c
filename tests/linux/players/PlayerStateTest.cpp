#include "platform/linux/players/PlayerState.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

Track track(const std::string& title, const std::string& artist = "Artist")
{
    Track result;
    result.title = title;
    result.artist = artist;
    return result;
}

TEST(PlayerStateTest, TellsATrackThatPlaysOrIsPaused)
{
    auto song = track("Song");
    song.album = "Album";
    song.loved = true;
    EXPECT_EQ(snapshotOf({PlaybackStatus::playing, song}),
              (PlayerSnapshot{PlaybackStatus::playing, "Song", "Artist", "Album", true}));
    EXPECT_EQ(snapshotOf({PlaybackStatus::paused, song}),
              (PlayerSnapshot{PlaybackStatus::paused, "Song", "Artist", "Album", true}));
}

TEST(PlayerStateTest, AStoppedPlayerHasNoTrackWhateverItStillNames)
{
    EXPECT_EQ(snapshotOf({PlaybackStatus::stopped, track("Song")}), PlayerSnapshot{});
}

TEST(PlayerStateTest, ATrackWithoutATitleIsNone)
{
    EXPECT_EQ(snapshotOf({PlaybackStatus::playing, track("")}), PlayerSnapshot{});
}

TEST(PlayerStateTest, AdvertisementsAreRecognisedByTheirIdOrTheirAddress)
{
    auto byPath = track("Buy this");
    byPath.id = "/com/spotify/ad/42";
    auto byText = track("Buy this");
    byText.id = "spotify:ad:42";
    auto byAddress = track("Buy this");
    byAddress.url = "https://open.spotify.com/ad/42";
    for (const auto& each : {byPath, byText, byAddress}) {
        EXPECT_TRUE(isAdvertisement(each));
        EXPECT_EQ(snapshotOf({PlaybackStatus::playing, each}), PlayerSnapshot{});
    }
}

TEST(PlayerStateTest, TheUsersOwnFolderMayBeCalledAd)
{
    auto song = track("Song");
    song.id = "spotify:track:/add/";
    song.url = "file:///home/me/ad/song.flac";
    EXPECT_FALSE(isAdvertisement(song));
}

TEST(PlayerStateTest, ATrackIsCompleteWithTitleAndArtist)
{
    EXPECT_TRUE(isComplete(track("Song")));
    EXPECT_FALSE(isComplete(track("Song", "")));
    EXPECT_FALSE(isComplete(track("")));
}

TEST(PlayerStateTest, AFileNameIsNoCompleteTitle)
{
    auto song = track("My song #1.mp3");
    song.url = "file:///music/My%20song%20%231.mp3";
    EXPECT_FALSE(isComplete(song));
    song.title = "My song";
    EXPECT_TRUE(isComplete(song));
    song.title = "a%zz%4";  // no valid escape: the text stands for itself
    song.url = "a%zz%4";
    EXPECT_FALSE(isComplete(song));
}

TEST(PlayerStateTest, ATrackIsTheSameByItsTitleItsIdAndItsAddress)
{
    auto song = track("Song");
    song.id = "/track/1";
    song.url = "file:///song.mp3";
    auto tagged = song;
    tagged.artist = "Another";
    tagged.album = "Album";
    EXPECT_TRUE(isSameTrack({PlaybackStatus::playing, song}, {PlaybackStatus::paused, tagged}));
    for (const auto field : {&Track::title, &Track::id, &Track::url}) {
        auto other = song;
        other.*field += "x";
        EXPECT_FALSE(isSameTrack({PlaybackStatus::playing, song}, {PlaybackStatus::playing, other}));
    }
}

TEST(PlayerStateTest, AMessageChangesOnlyWhatItNames)
{
    PlayerState state;
    merge(state, {PlaybackStatus::playing, track("One")});
    merge(state, {PlaybackStatus::paused, std::nullopt});
    EXPECT_EQ(state.track.title, "One");
    merge(state, {std::nullopt, track("Two")});
    EXPECT_EQ(state.status, PlaybackStatus::paused);
    EXPECT_EQ(state.track.title, "Two");
}

TEST(PlayerStateTest, ATrackFromBeforeAStopIsNotBelieved)
{
    PlayerState state;
    merge(state, {PlaybackStatus::playing, track("One")});
    merge(state, {PlaybackStatus::stopped, std::nullopt});
    merge(state, {PlaybackStatus::playing, std::nullopt});
    EXPECT_EQ(state.track.title, "");
}

TEST(PlayerStateTest, ATrackNamedAfterAStopIsBelieved)
{
    PlayerState state;
    merge(state, {PlaybackStatus::stopped, std::nullopt});
    merge(state, {std::nullopt, track("One")});
    merge(state, {PlaybackStatus::playing, std::nullopt});
    EXPECT_EQ(snapshotOf(state).title, "One");
}

}  // namespace
}  // namespace sonvara::test
