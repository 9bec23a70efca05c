// What the known players do on the bus, as measured with each of them, and what must become of it.
#include "PlayersFixture.h"

#include "support/PlayerScripts.h"

#include <QTimer>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

// The pauses are shorter than the measured ones, to leave time to a busy machine; their full length is
// tested in virtual time.
//
// Each test ends with a track that the player changes to properly: what else it made the adapter
// post must have come before.
class PlayerQuirksTest : public PlayersTest {
protected:
    void SetUp() override
    {
        start();
        ASSERT_EQ(pollMusic(), "notrunning");
    }
    // The player has come up and plays its first track.
    void playsFirst(FakePlayer& player)
    {
        player.play("First");
        ASSERT_EQ(postsUntil(1), Posts{first});
    }
    // What has been posted until the player's last track.
    Posts postsUntilLast(FakePlayer& player)
    {
        player.play("Last");
        EXPECT_TRUE(
            eventually([&] { return !posts.empty() && posts.back().ends_with(" Last/Artist/Album"); }));
        return posts;
    }
    const std::string first = "Music Playing First/Artist/Album";
    const std::string second = "Music Playing Second/Artist/Album";
    const std::string last = "Music Playing Last/Artist/Album";
};

TEST_F(PlayerQuirksTest, AudaciousSendsOneSignalAndOneConstantTrackId)
{
    auto player = makePlayer({"audacious"});
    playsFirst(player);
    player.change({{"Metadata", metadataOf("Second")}});
    EXPECT_EQ(postsUntilLast(player), (Posts{first, second, last}));
}

TEST_F(PlayerQuirksTest, MpvShowsTheFileNameUntilItHasReadTheTags)
{
    auto player = makePlayer({"mpv"});
    playsFirst(player);
    player.change(
        {{"Metadata", QVariantMap{{"xesam:title", "second.mp3"}, {"xesam:url", "file:///second.mp3"}}}});
    EXPECT_EQ(pollMusic(), "First||Artist||Album||true||false");
    QTimer::singleShot(100ms, [&] { player.change({{"Metadata", metadataOf("Second")}}); });
    EXPECT_EQ(postsUntil(2), (Posts{first, second}));
    EXPECT_EQ(postsUntilLast(player), (Posts{first, second, last}));
}

TEST_F(PlayerQuirksTest, VlcSaysEverythingTwiceAndStopsBetweenTracks)
{
    auto player = makePlayer({"vlc", "vlc.instance77"});
    playsFirst(player);
    player.play("First");
    for (int i = 0; i < 2; ++i) player.change({{"PlaybackStatus", "Stopped"}});
    EXPECT_EQ(pollMusic(), "First||Artist||Album||true||false");
    QTimer::singleShot(100ms, [&] {
        for (int i = 0; i < 2; ++i) player.change({{"PlaybackStatus", "Playing"}});
        for (int i = 0; i < 2; ++i) player.change({{"Metadata", metadataOf("Second")}});
    });
    EXPECT_EQ(postsUntil(2), (Posts{first, second}));
    EXPECT_EQ(postsUntilLast(player), (Posts{first, second, last}));
}

TEST_F(PlayerQuirksTest, VlcMayShowItselfOnTwoConnections)
{
    auto player = makePlayer({"vlc"});
    auto twin = makePlayer({"vlc.instance77"});
    playsFirst(player);
    twin.play("First");
    for (auto* each : {&player, &twin}) each->change({{"Metadata", metadataOf("Second")}});
    EXPECT_EQ(postsUntilLast(player), (Posts{first, second, last}));
}

TEST_F(PlayerQuirksTest, StrawberrySendsTheTrackTwiceBeforeItPlays)
{
    auto metadata = metadataOf("First");
    metadata["mpris:trackid"] = "a text, no path";
    auto player = makePlayer({"strawberry"});
    ASSERT_EQ(runUntil(musicPollScript(), "error"), "error");  // it has come up, with nothing to play
    for (int i = 0; i < 2; ++i) player.change({{"Metadata", metadata}});
    player.change({{"PlaybackStatus", "Playing"}});
    EXPECT_EQ(postsUntilLast(player), (Posts{first, last}));
}

TEST_F(PlayerQuirksTest, RhythmboxClearsEverythingBeforeTheNextTrack)
{
    auto player = makePlayer({"rhythmbox"});
    playsFirst(player);
    player.change({{"Metadata", QVariantMap()}, {"PlaybackStatus", "Stopped"}});
    EXPECT_EQ(pollMusic(), "First||Artist||Album||true||false");
    for (int i = 0; i < 2; ++i) player.play("Second");
    EXPECT_EQ(postsUntilLast(player), (Posts{first, second, last}));
}

TEST_F(PlayerQuirksTest, MpdRepeatsTheTrackAfterAVolumeChange)
{
    auto player = makePlayer({"mpd"});
    playsFirst(player);
    for (int i = 0; i < 2; ++i) player.change({{"Metadata", metadataOf("Second")}});
    player.change({{"Volume", 0.5}});
    player.change({{"Metadata", metadataOf("Second")}});
    EXPECT_EQ(postsUntilLast(player), (Posts{first, second, last}));
}

TEST_F(PlayerQuirksTest, MpdGivesItsNameUpForAMomentWhenItsVolumeCannotBeSet)
{
    auto player = makePlayer({"mpd"});
    playsFirst(player);
    player.disown("mpd");
    player.own("mpd");
    EXPECT_EQ(pollMusic(), "First||Artist||Album||true||false");
    EXPECT_EQ(postsUntilLast(player), (Posts{first, last}));
}

TEST_F(PlayerQuirksTest, CelluloidTellsAStreamsSongBesideTheStation)
{
    auto player = makePlayer({"io.github.celluloid_player.Celluloid"});
    playsFirst(player);
    auto metadata = metadataOf("Radio Nine", {}, "");
    metadata["xesam:url"] = "http://127.0.0.1:8000/radio";
    metadata["icy-title"] = "One - Song";
    player.change({{"Metadata", metadata}});
    EXPECT_EQ(postsUntil(2).back(), "Music Playing One - Song//");
    EXPECT_EQ(postsUntilLast(player), (Posts{first, "Music Playing One - Song//", last}));
}

TEST_F(PlayerQuirksTest, MpdNamesTheStationAsTheAlbumOfEachSong)
{
    auto player = makePlayer({"mpd"});
    playsFirst(player);
    auto metadata = metadataOf("One - Song", {}, "Radio Nine");
    metadata["xesam:url"] = "http://127.0.0.1:8000/radio";
    player.change({{"Metadata", metadata}});
    EXPECT_EQ(postsUntil(2).back(), "Music Playing One - Song//");
    EXPECT_EQ(postsUntilLast(player), (Posts{first, "Music Playing One - Song//", last}));
}

TEST_F(PlayerQuirksTest, SpotifyStartsWithoutMetadata)
{
    auto player = makePlayer({"spotify"});
    player.change({{"PlaybackStatus", "Playing"}, {"Metadata", QVariantMap()}});
    EXPECT_EQ(runUntil(spotifyPollScript(), "error"), "error");
    EXPECT_EQ(pollMusic(), "notrunning");
    player.play("First");
    EXPECT_EQ(postsUntil(1), Posts{"Spotify Playing First/Artist/Album"});
    EXPECT_EQ(pollSpotify(), "First||Artist||Album||true");
}

TEST_F(PlayerQuirksTest, SpotifySignalsWithoutTheNewValues)
{
    auto player = makePlayer({"spotify"});
    player.set({{"PlaybackStatus", "Playing"}, {"Metadata", metadataOf("First")}});
    player.invalidate("Metadata");
    EXPECT_EQ(postsUntil(1), Posts{"Spotify Playing First/Artist/Album"});
    player.set({{"Metadata", metadataOf("Second")}});
    player.invalidate("Metadata");
    EXPECT_EQ(postsUntil(2).back(), "Spotify Playing Second/Artist/Album");
}

TEST_F(PlayerQuirksTest, SpotifysAdvertisementsAreNoTracks)
{
    auto player = makePlayer({"spotify"});
    player.play("First");
    postsUntil(1);
    auto advertisement = metadataOf("Buy this");
    advertisement["mpris:trackid"] = "/com/spotify/ad/1";
    player.change({{"Metadata", advertisement}});
    EXPECT_EQ(postsUntil(2).back(), "Spotify Stopped //");
    EXPECT_EQ(pollSpotify(), "error");
    EXPECT_EQ(postsUntilLast(player).size(), 3U);
}

TEST_F(PlayerQuirksTest, BrowsersAreKnownByTheirWordsNotTheirNames)
{
    auto browser = makePlayer({});
    browser.introduction = {{"Identity", "Chromium"}, {"DesktopEntry", "chromium"}};
    browser.own("chromium.instance1");
    browser.play("A video");
    ASSERT_TRUE(eventually([&] { return browser.questions() >= 2; }));
    EXPECT_EQ(pollMusic(), "notrunning");
    browser.disown("chromium.instance1");
    auto client = makePlayer({});
    client.introduction = {{"Identity", "Cider"}};
    client.own("chromium.instance1");
    client.play("A video");
    EXPECT_EQ(runUntil(musicPollScript(), "A video||Artist||Album||true||false"),
              "A video||Artist||Album||true||false");
    EXPECT_EQ(posts, Posts{"Music Playing A video/Artist/Album"});
}

TEST_F(PlayerQuirksTest, ProxiesAndMirrorsAreNotAskedAtAll)
{
    auto proxy = makePlayer({"playerctld", "kdeconnect.mpris_1", "plasma-browser-integration"});
    proxy.play("First");
    auto player = makePlayer({"vlc"});
    player.play("Second");
    EXPECT_EQ(postsUntil(1), Posts{second});
    EXPECT_EQ(proxy.questions(), 0);
}

TEST_F(PlayerQuirksTest, SeveralArtistsAreJoinedAndTheHighestRatingIsLove)
{
    auto player = makePlayer({"rhythmbox"});
    auto metadata = metadataOf("First", {"A", "B"});
    metadata["xesam:userRating"] = 1.0;
    player.change({{"PlaybackStatus", "Playing"}, {"Metadata", metadata}});
    EXPECT_EQ(postsUntil(1), Posts{"Music Playing First/A, B/Album loved"});
    EXPECT_EQ(pollMusic(), "First||A, B||Album||true||true");
}

TEST_F(PlayerQuirksTest, WrongTypesAreTakenForWhatTheyCanMean)
{
    auto player = makePlayer({"vlc"});
    QVariantMap metadata{{"xesam:title", "First"},     {"xesam:artist", "Solo"}, {"xesam:album", 7},
                         {"mpris:trackid", "no path"}, {"xesam:genre", "Genre"}, {"xesam:userRating", "1.0"}};
    player.change({{"PlaybackStatus", "Playing"}, {"Metadata", metadata}});
    EXPECT_EQ(postsUntil(1), Posts{"Music Playing First/Solo/"});
    EXPECT_EQ(pollMusic(), "First||Solo||||true||false");
}

}  // namespace
}  // namespace sonvara::test
