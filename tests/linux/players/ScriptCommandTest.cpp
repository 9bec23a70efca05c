#include "platform/linux/players/ScriptCommand.h"

#include "support/PlayerScripts.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

TEST(ScriptCommandTest, ThePollsAreThoseThatTheMonitorSends)
{
    EXPECT_EQ(recognise(musicPollScript()), ScriptCommand{PlayerKind::music});
    EXPECT_EQ(recognise(spotifyPollScript()), ScriptCommand{PlayerKind::spotify});
}

TEST(ScriptCommandTest, APollThatDiffersInOneByteIsNone)
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

TEST(ScriptCommandTest, AnyOtherTextIsNone)
{
    for (const auto* text : {"", "try", "tell application", R"(tell application "Music" to get sound volume)",
                             R"(tell application "Music" to play)"})
        EXPECT_EQ(recognise(text), std::nullopt) << text;
    EXPECT_EQ(recognise(musicPollScript() + '\0'), std::nullopt);
}

TEST(ScriptCommandTest, AMusicPollAnswersFiveFieldsAndASpotifyPollFour)
{
    const Picture picture{PlaybackStatus::playing, "T", "A", "B", true};
    EXPECT_EQ(pollAnswer(PlayerKind::music, picture).text, "T||A||B||true||true");
    EXPECT_EQ(pollAnswer(PlayerKind::spotify, picture).text, "T||A||B||true");
    const Picture pause{PlaybackStatus::paused, "T", "", "", false};
    EXPECT_EQ(pollAnswer(PlayerKind::music, pause).text, "T||||||false||false");
    EXPECT_EQ(pollAnswer(PlayerKind::spotify, pause).text, "T||||||false");
}

TEST(ScriptCommandTest, TheTitleIsGivenAsItIs)
{
    const std::string title = std::string("a||b\n\"") + '\0' + std::string(1 << 20, 'x');
    const Picture picture{PlaybackStatus::playing, title, "A", "B", false};
    EXPECT_EQ(pollAnswer(PlayerKind::spotify, picture).text, title + "||A||B||true");
}

TEST(ScriptCommandTest, WithoutATrackThePollAnswersError)
{
    const auto result = pollAnswer(PlayerKind::music, Picture{});
    EXPECT_EQ(result.text, "error");
    EXPECT_TRUE(result.created);
    EXPECT_FALSE(result.error);
    EXPECT_EQ(notRunningAnswer().text, "notrunning");
}

}  // namespace
}  // namespace sonvara::test
