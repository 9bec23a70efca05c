// Whether a player plays, read off the answers to polls.
#include "platform/macos/players/PlayingWatch.h"

#include "support/PlayerScripts.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace sonvara::test {
namespace {

struct Answers final : ScriptRunner {
    std::map<std::string, ScriptResult> of;
    ScriptResult run(const std::string& source) override { return of[source]; }
};

class PlayingWatchTest : public testing::Test {
protected:
    void musicSays(const std::string& text) { poll(musicPollScript(), text); }
    void spotifySays(const std::string& text) { poll(spotifyPollScript(), text); }

    std::vector<bool> told_;

private:
    void poll(const std::string& script, const std::string& text)
    {
        players_.of[script] = ScriptResult::ofText(text);
        EXPECT_EQ(watch_.run(script).text, text) << "passed on as it is";
    }

    Answers players_;
    PlayingWatch watch_{players_, [this](bool isAnyPlaying) { told_.push_back(isAnyPlaying); }};
};

TEST_F(PlayingWatchTest, TellsWhenTheFirstPlayerPlaysAndWhenTheLastOneStops)
{
    musicSays("A||B||C||true||false");
    musicSays("A||B||C||true||true");
    spotifySays("A||B||C||true");
    musicSays("A||B||C||false||true");
    EXPECT_EQ(told_, std::vector<bool>{true});
    spotifySays("A||B||C||false");
    EXPECT_EQ(told_, (std::vector<bool>{true, false}));
}

TEST_F(PlayingWatchTest, TakesAFailureForAPlayerThatDoesNotPlay)
{
    spotifySays("A||B||C||true");
    spotifySays("error");
    spotifySays("notrunning");
    EXPECT_EQ(told_, (std::vector<bool>{true, false}));
}

}  // namespace
}  // namespace sonvara::test
