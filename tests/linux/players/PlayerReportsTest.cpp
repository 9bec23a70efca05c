#include "platform/linux/players/PlayerReports.h"

#include "support/PlayerScripts.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

TEST(PlayerReportsTest, ThePollsAreThoseThatTheMonitorSends)
{
    EXPECT_EQ(polledPlayer(musicPollScript()), PlayerKind::music);
    EXPECT_EQ(polledPlayer(spotifyPollScript()), PlayerKind::spotify);
}

TEST(PlayerReportsTest, APollThatDiffersInOneByteIsNone)
{
    for (const auto& script : {musicPollScript(), spotifyPollScript()}) {
        EXPECT_EQ(polledPlayer(script + "\n"), std::nullopt);
        EXPECT_EQ(polledPlayer(" " + script), std::nullopt);
        for (std::size_t i = 0; i < script.size(); ++i) {
            auto other = script;
            other[i] = static_cast<char>(other[i] ^ 1);
            EXPECT_EQ(polledPlayer(other), std::nullopt) << i;
        }
    }
}

TEST(PlayerReportsTest, AnyOtherTextIsNone)
{
    for (const auto* text : {"", "try", "tell application", R"(tell application "Music" to get sound volume)",
                             R"(tell application "Music" to play)"})
        EXPECT_EQ(polledPlayer(text), std::nullopt) << text;
    EXPECT_EQ(polledPlayer(musicPollScript() + '\0'), std::nullopt);
}

TEST(PlayerReportsTest, AMusicPollAnswersFiveFieldsAndASpotifyPollFour)
{
    const PlayerSnapshot snapshot{PlaybackStatus::playing, "T", "A", "B", true};
    EXPECT_EQ(pollAnswer(PlayerKind::music, snapshot), "T||A||B||true||true");
    EXPECT_EQ(pollAnswer(PlayerKind::spotify, snapshot), "T||A||B||true");
    const PlayerSnapshot pause{PlaybackStatus::paused, "T", "", "", false};
    EXPECT_EQ(pollAnswer(PlayerKind::music, pause), "T||||||false||false");
    EXPECT_EQ(pollAnswer(PlayerKind::spotify, pause), "T||||||false");
}

TEST(PlayerReportsTest, TheTitleIsGivenAsItIs)
{
    const std::string title = std::string("a||b\n\"") + '\0' + std::string(1 << 20, 'x');
    const PlayerSnapshot snapshot{PlaybackStatus::playing, title, "A", "B", false};
    EXPECT_EQ(pollAnswer(PlayerKind::spotify, snapshot), title + "||A||B||true");
}

TEST(PlayerReportsTest, WithoutATrackThePollAnswersError)
{
    EXPECT_EQ(pollAnswer(PlayerKind::music, PlayerSnapshot{}), "error");
}

TEST(PlayerReportsTest, WritesANotificationAsThePlayersDo)
{
    const auto music = notificationOf(PlayerKind::music, {PlaybackStatus::playing, "T", "A, B", "C", true});
    EXPECT_EQ(music.name, "com.apple.Music.playerInfo");
    EXPECT_EQ(*music.userInfo, (UserInfo{{"Player State", std::string("Playing")},
                                         {"Name", std::string("T")},
                                         {"Artist", std::string("A, B")},
                                         {"Album", std::string("C")},
                                         {"Loved", true}}));
    const auto spotify = notificationOf(PlayerKind::spotify, {PlaybackStatus::paused, "T", "", "", false});
    EXPECT_EQ(spotify.name, "com.spotify.client.PlaybackStateChanged");
    EXPECT_EQ(spotify.userInfo->at("Player State"), Variant(std::string("Paused")));
    EXPECT_EQ(spotify.userInfo->at("Loved"), Variant(false));
}

TEST(PlayerReportsTest, TellsTheEndAsStoppedWithAnEmptyName)
{
    const auto end = notificationOf(PlayerKind::music, PlayerSnapshot{});
    EXPECT_EQ(end.userInfo->at("Player State"), Variant(std::string("Stopped")));
    EXPECT_EQ(end.userInfo->at("Name"), Variant(std::string()));
}

}  // namespace
}  // namespace sonvara::test
