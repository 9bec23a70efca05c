#include "platform/linux/players/ScriptCommand.h"

#include "support/PlayerScripts.h"

#include <gtest/gtest.h>

namespace sonvara::players {
namespace {

using Verb = ScriptCommand::Verb;

TEST(ScriptCommand, ThePollsAreThoseThatTheMonitorSends)
{
    EXPECT_EQ(recognise(musicPollScript()), (ScriptCommand{Verb::poll, PlayerKind::music}));
    EXPECT_EQ(recognise(spotifyPollScript()), (ScriptCommand{Verb::poll, PlayerKind::spotify}));
}

TEST(ScriptCommand, APollThatDiffersInOneByteIsNone)
{
    for (const auto& script : {musicPollScript(), spotifyPollScript()}) {
        EXPECT_EQ(recognise(script + "\n"), std::nullopt);
        EXPECT_EQ(recognise(" " + script), std::nullopt);
        for (std::size_t i = 0; i < script.size(); ++i) {
            auto other = script;
            other[i] = static_cast<char>(other[i] ^ 1);
            EXPECT_EQ(recognise(other), std::nullopt) << i;
        }
    }
}

TEST(ScriptCommand, UnderstandsTheVolumeCommandsOfBothPlayers)
{
    EXPECT_EQ(recognise(R"(tell application "Music" to get sound volume)"),
              (ScriptCommand{Verb::getVolume, PlayerKind::music}));
    EXPECT_EQ(recognise(R"(tell application "Spotify" to get sound volume)"),
              (ScriptCommand{Verb::getVolume, PlayerKind::spotify}));
    for (const int volume : {0, 1, 9, 10, 35, 99, 100}) {
        EXPECT_EQ(recognise(R"(tell application "Music" to set sound volume to )" + std::to_string(volume)),
                  (ScriptCommand{Verb::setVolume, PlayerKind::music, volume}));
        EXPECT_EQ(recognise(R"(tell application "Spotify" to set sound volume to )" + std::to_string(volume)),
                  (ScriptCommand{Verb::setVolume, PlayerKind::spotify, volume}));
    }
}

TEST(ScriptCommand, VolumesInAnyOtherFormAreNone)
{
    for (const auto* volume :
         {"", " 5", "5 ", "05", "00", "+5", "-5", "101", "1000", "3.5", "35\n", "1e1", "x"})
        EXPECT_EQ(recognise(std::string(R"(tell application "Music" to set sound volume to )") + volume),
                  std::nullopt)
            << volume;
}

TEST(ScriptCommand, AnyOtherTextIsNone)
{
    for (const auto* text :
         {"", "try", "tell application", R"(tell application "Finder" to get sound volume)",
          R"(tell application "music" to get sound volume)",
          R"(tell application "MusicX" to get sound volume)",
          R"(tell application "Music" to get sound volume )", R"(tell application "Music" to play)"})
        EXPECT_EQ(recognise(text), std::nullopt) << text;
    EXPECT_EQ(recognise(std::string("tell application \"Music\" to get sound volume") + '\0'), std::nullopt);
}

TEST(ScriptCommand, AMusicPollAnswersFiveFieldsAndASpotifyPollFour)
{
    const Picture picture{PlaybackStatus::playing, "T", "A", "B", true};
    EXPECT_EQ(pollAnswer(PlayerKind::music, picture).text, "T||A||B||true||true");
    EXPECT_EQ(pollAnswer(PlayerKind::spotify, picture).text, "T||A||B||true");
    const Picture pause{PlaybackStatus::paused, "T", "", "", false};
    EXPECT_EQ(pollAnswer(PlayerKind::music, pause).text, "T||||||false||false");
    EXPECT_EQ(pollAnswer(PlayerKind::spotify, pause).text, "T||||||false");
}

TEST(ScriptCommand, TheTitleIsGivenAsItIs)
{
    const std::string title = std::string("a||b\n\"") + '\0' + std::string(1 << 20, 'x');
    const Picture picture{PlaybackStatus::playing, title, "A", "B", false};
    EXPECT_EQ(pollAnswer(PlayerKind::spotify, picture).text, title + "||A||B||true");
}

TEST(ScriptCommand, WithoutATrackThePollAnswersError)
{
    const auto result = pollAnswer(PlayerKind::music, Picture{});
    EXPECT_EQ(result.text, "error");
    EXPECT_TRUE(result.created);
    EXPECT_FALSE(result.error);
    EXPECT_EQ(notRunningAnswer().text, "notrunning");
}

TEST(ScriptCommand, AVolumeIsANumberAndAText)
{
    const auto result = volumeAnswer(35);
    EXPECT_EQ(result.integer, 35);
    EXPECT_EQ(result.text, "35");
    EXPECT_FALSE(result.error);
}

}  // namespace
}  // namespace sonvara::players
