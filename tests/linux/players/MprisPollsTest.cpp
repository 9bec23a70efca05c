// What is believed of the players is never older than one poll, whatever they signal.
#include "PlayersFixture.h"

#include "support/PlayerScripts.h"

#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

const std::string one = "Music Playing One/Artist/Album";
const std::string two = "Music Playing Two/Artist/Album";

class MprisPollsTest : public PlayersTest {
protected:
    void SetUp() override { start(); }
    // The player has come up and has told of a change of tracks.
    void playsTwo(FakePlayer& player)
    {
        player.play("One");
        postsUntil(1);
        player.play("Two");
        ASSERT_EQ(postsUntil(2), (Posts{one, two}));
    }
    // Polls until the player has been asked; its answer to the question before has been read by then.
    void pollUntilAsked(const FakePlayer& player)
    {
        const int before = player.questions();
        ASSERT_TRUE(eventually([&] {
            pollMusic();
            return player.questions() > before;
        }));
    }
    // Until nothing can be held back any more of what was signalled before: a pause that is told has been
    // held back for as long as anything is.
    void letEverythingSettle()
    {
        other_.say("Other");
        ASSERT_TRUE(eventually([&] { return posts.back() == "Spotify Playing Other/Artist/Album"; }));
        other_.say("pause");
        ASSERT_TRUE(eventually([&] { return posts.back() == "Spotify Paused Other/Artist/Album"; }));
    }
    // What has been posted of the desktop's own player.
    [[nodiscard]] Posts music() const
    {
        auto found = posts;
        std::erase_if(found, [](const auto& each) { return !each.starts_with("Music"); });
        return found;
    }

private:
    PlayerProcess other_{bus, {"spotify"}};
};

TEST_F(MprisPollsTest, APauseThatIsNotSignalledIsTold)
{
    auto player = makePlayer({"rhythmbox"});
    playsTwo(player);
    player.set({{"PlaybackStatus", "Paused"}});
    pollUntilAsked(player);
    EXPECT_EQ(postsUntil(3).back(), "Music Paused Two/Artist/Album");
    EXPECT_EQ(pollMusic(), "Two||Artist||Album||false||false");
}

TEST_F(MprisPollsTest, AStartThatIsNotSignalledIsTold)
{
    auto player = makePlayer({"rhythmbox"});
    playsTwo(player);
    player.change({{"PlaybackStatus", "Stopped"}});
    ASSERT_EQ(postsUntil(3).back(), "Music Stopped //");
    player.set({{"PlaybackStatus", "Playing"}, {"Metadata", metadataOf("Three")}});
    pollUntilAsked(player);
    EXPECT_EQ(postsUntil(4).back(), "Music Playing Three/Artist/Album");
}

TEST_F(MprisPollsTest, AStopInTheMiddleOfAChangeOfTracksIsNotTold)
{
    auto player = makePlayer({"rhythmbox"});
    playsTwo(player);
    player.set({{"PlaybackStatus", "Stopped"}});
    pollUntilAsked(player);
    pollUntilAsked(player);
    player.set({{"PlaybackStatus", "Playing"}});
    player.change({{"Metadata", metadataOf("Three")}});
    EXPECT_EQ(postsUntil(3).back(), "Music Playing Three/Artist/Album");
}

TEST_F(MprisPollsTest, APauseInTheMiddleOfAChangeOfTracksIsPutRightWithoutAnotherPoll)
{
    auto player = makePlayer({"rhythmbox"});
    playsTwo(player);
    pollUntilAsked(player);
    letEverythingSettle();  // a poll asks nothing while an answer is on its way
    player.set({{"PlaybackStatus", "Paused"}});
    const int asked = player.questions();
    pollMusic();
    ASSERT_TRUE(eventually([&] { return player.questions() > asked; }));
    player.set({{"PlaybackStatus", "Playing"}});
    EXPECT_TRUE(eventually([&] { return music().size() == 4; }));
    EXPECT_EQ(music(), (Posts{one, two, "Music Paused Two/Artist/Album", two}));
}

TEST_F(MprisPollsTest, AnAnswerThatASignalHasOvertakenIsNotBelieved)
{
    auto player = makePlayer({"rhythmbox"});
    playsTwo(player);
    int answers = 0;
    player.onQuestion = [&](const QDBusMessage&) {
        if (++answers == 1)
            player.signal(
                {"org.mpris.MediaPlayer2.Player", QVariantMap{{"PlaybackStatus", "Paused"}}, QStringList()});
        else
            player.set({{"PlaybackStatus", "Paused"}});
        return true;
    };
    pollUntilAsked(player);
    EXPECT_EQ(postsUntil(3), (Posts{one, two, "Music Paused Two/Artist/Album"}));
    EXPECT_GE(answers, 2);
}

TEST_F(MprisPollsTest, APlayerThatNeverSignalsIsToldBesideAPausedOne)
{
    PlayerProcess paused(bus, {"rhythmbox"});
    paused.say("One");
    postsUntil(1);
    paused.say("pause");
    ASSERT_EQ(postsUntil(2).back(), "Music Paused One/Artist/Album");
    auto silent = makePlayer({"vlc"});
    pollUntilAsked(silent);
    silent.set({{"PlaybackStatus", "Playing"}, {"Metadata", metadataOf("Two")}});
    pollUntilAsked(silent);
    EXPECT_EQ(postsUntil(3).back(), two);
}

TEST_F(MprisPollsTest, APlayerThatPausedUnheardIsNotToldWhenAnotherPauses)
{
    PlayerProcess other(bus, {"vlc"});
    auto player = makePlayer({"rhythmbox"});
    playsTwo(player);
    other.say("Three");
    postsUntil(3);
    player.set({{"PlaybackStatus", "Paused"}});
    pollUntilAsked(player);
    pollUntilAsked(player);
    letEverythingSettle();
    other.say("pause");
    EXPECT_TRUE(eventually([&] { return music().size() == 4; }));
    EXPECT_EQ(music().back(), "Music Paused Three/Artist/Album");
}

TEST_F(MprisPollsTest, EachPlayerThatCountsIsAskedOnceByAPoll)
{
    PlayerProcess other(bus, {"vlc"});
    other.say("One");
    postsUntil(1);
    auto player = makePlayer({"rhythmbox"});
    auto browser = makePlayer({});
    browser.introduction = {{"Identity", "Firefox"}};
    browser.own("firefox.instance_1_2");
    pollUntilAsked(player);
    pollUntilAsked(player);
    letEverythingSettle();
    const int before = player.questions();
    const int browsers = browser.questions();
    EXPECT_EQ(pollMusic(), "One||Artist||Album||true||false") << "the other one is meant";
    letEverythingSettle();  // what a poll has asked is long answered then
    EXPECT_EQ(player.questions() - before, 1);
    EXPECT_EQ(browser.questions(), browsers);
}

TEST_F(MprisPollsTest, AMetadataMapWithoutATitleDoesNotEmptyTheTrack)
{
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    for (const auto& map : {QVariantMap{{"mpris:artUrl", "file:///cover.png"}}, QVariantMap()})
        player.signal({"org.mpris.MediaPlayer2.Player", QVariantMap{{"Metadata", map}}, QStringList()});
    letEverythingSettle();
    EXPECT_EQ(music(), Posts{one});
    EXPECT_EQ(pollMusic(), "One||Artist||Album||true||false");
}

TEST_F(MprisPollsTest, AMetadataMapWithoutAnArtistTakesNoneAway)
{
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    const QVariantMap map{{"xesam:title", "One"}, {"mpris:artUrl", "file:///cover.png"}};
    player.signal({"org.mpris.MediaPlayer2.Player", QVariantMap{{"Metadata", map}}, QStringList()});
    letEverythingSettle();
    EXPECT_EQ(music(), Posts{one});
}

TEST_F(MprisPollsTest, ATrackThatThePlayerItselfEmptiesIsGone)
{
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    player.change({{"Metadata", QVariantMap()}});
    EXPECT_EQ(postsUntil(2).back(), "Music Stopped //");
}

TEST_F(MprisPollsTest, AnIntroductionWithoutAnAnswerIsRepeated)
{
    // By its name it is a browser; only its own words say that it plays music.
    auto player = makePlayer({});
    player.introduction = {{"Identity", "Cider"}};
    int questions = 0;
    player.onQuestion = [&](const QDBusMessage&) { return ++questions > 1; };
    player.own("chromium.instance7");
    player.play("One");
    EXPECT_EQ(runUntil(musicPollScript(), "One||Artist||Album||true||false"),
              "One||Artist||Album||true||false");
    EXPECT_EQ(posts, Posts{one});
}

TEST_F(MprisPollsTest, AnIntroductionAnsweredByAnErrorIsRepeated)
{
    auto player = makePlayer({});
    player.introduction = {{"Identity", "Cider"}};
    player.manner = FakePlayer::Manner::failing;
    player.own("chromium.instance7");
    ASSERT_TRUE(eventually([&] { return player.questions() >= 2; }));
    player.manner = FakePlayer::Manner::proper;
    player.play("One");
    EXPECT_EQ(runUntil(musicPollScript(), "One||Artist||Album||true||false"),
              "One||Artist||Album||true||false");
}

TEST_F(MprisPollsTest, BlanksAtTheEndsOfATextAreNotRead)
{
    auto player = makePlayer({"rhythmbox"});
    player.change({{"PlaybackStatus", "Playing"},
                   {"Metadata", metadataOf(" One\u00a0\n", {"\tA ", " ", "B "}, "\u3000Album ")}});
    EXPECT_EQ(postsUntil(1), Posts{"Music Playing One/A, B/Album"});
    EXPECT_EQ(pollMusic(), "One||A, B||Album||true||false");
}

}  // namespace
}  // namespace sonvara::test
