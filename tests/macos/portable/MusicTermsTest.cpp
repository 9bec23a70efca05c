// Music's dictionaries: the one up to macOS 13, and the one from macOS 14 on.
#include "platform/macos/players/MusicTerms.h"

#include "support/PlayerScripts.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

/// Music as its scripts see it.
struct Music {
    std::string term;  ///< which one its dictionary has
    bool hasTrack = true;
    bool compilesOthers = true;  ///< takes a word that it does not know for a variable
    std::vector<std::string> sources = {};

    ScriptResult operator()(const std::string& source)
    {
        sources.push_back(source);
        const bool isUnderstood = source.find(" " + term + " of current track") != std::string::npos;
        if (!isUnderstood && !compilesOthers) return ScriptResult::ofError("-2741");
        if (!isUnderstood || !hasTrack) return ScriptResult::ofText("error");
        return ScriptResult::ofText("Song||Artist||Album||true||true");
    }
};

ScriptResult poll(MusicTerms& terms, Music& music)
{
    return terms.run(musicPollScript(), [&music](const std::string& source) { return music(source); });
}

constexpr const char* answer = "Song||Artist||Album||true||true";

TEST(MusicTermsTest, AnOldMusicIsSentTheTextAsItIs)
{
    MusicTerms terms;
    Music music{.term = "loved"};
    EXPECT_EQ(poll(terms, music).text, answer);
    music.hasTrack = false;
    EXPECT_EQ(poll(terms, music).text, "error");
    EXPECT_EQ(music.sources, (std::vector<std::string>{musicPollScript(), musicPollScript()}));
}

TEST(MusicTermsTest, ANewMusicIsAskedInItsOwnTermAfterTheOldOneHasFailed)
{
    MusicTerms terms;
    Music music{.term = "favorited"};
    EXPECT_EQ(poll(terms, music).text, answer);
    ASSERT_EQ(music.sources.size(), 2U);
    EXPECT_EQ(music.sources[0], musicPollScript());
    EXPECT_EQ(music.sources[1].size(), musicPollScript().size() + 4);
}

TEST(MusicTermsTest, WhatWorkedIsRemembered)
{
    MusicTerms terms;
    Music music{.term = "favorited"};
    (void)poll(terms, music);
    music.sources.clear();
    music.hasTrack = false;
    EXPECT_EQ(poll(terms, music).text, "error");
    ASSERT_EQ(music.sources.size(), 1U);
    EXPECT_NE(music.sources[0], musicPollScript());
}

TEST(MusicTermsTest, ATextThatDoesNotCompileCountsAsFailed)
{
    MusicTerms terms;
    Music music{.term = "favorited", .compilesOthers = false};
    EXPECT_EQ(poll(terms, music).text, answer);
}

TEST(MusicTermsTest, AStreamWithoutATrackDecidesNothing)
{
    MusicTerms terms;
    Music music{.term = "favorited", .hasTrack = false};
    EXPECT_EQ(poll(terms, music).text, "error");
    music.hasTrack = true;
    EXPECT_EQ(poll(terms, music).text, answer);
}

TEST(MusicTermsTest, AMusicThatDoesNotRunIsAskedOnceOnly)
{
    MusicTerms terms;
    int asked = 0;
    const auto notRunning = [&asked](const std::string&) {
        ++asked;
        return ScriptResult::ofText("notrunning");
    };
    EXPECT_EQ(terms.run(musicPollScript(), notRunning).text, "notrunning");
    EXPECT_EQ(asked, 1);
}

TEST(MusicTermsTest, OtherScriptsPassAsTheyAre)
{
    MusicTerms terms;
    Music music{.term = "favorited"};
    (void)terms.run(spotifyPollScript(), [&music](const std::string& source) { return music(source); });
    EXPECT_EQ(music.sources, (std::vector<std::string>{spotifyPollScript()}));
}

}  // namespace
}  // namespace sonvara::test
