// The scripts that the players are sent.
#include "support/PlayerScripts.h"

#include <gtest/gtest.h>

#include <string>

namespace sonvara::test {
namespace {

TEST(PlayerScriptsTest, PollsAreTheWireFormatToTheByte)
{
    EXPECT_EQ(musicPollScript(), R"(try
    tell application "Music"
        if it is running then
            set trackName to name of current track
            set artistName to artist of current track
            set albumName to album of current track
            set isPlaying to player state is playing
            set isFavorited to loved of current track
            return trackName & "||" & artistName & "||" & albumName & "||" & isPlaying & "||" & isFavorited
        else
            return "notrunning"
        end if
    end tell
on error
    return "error"
end try)");
    EXPECT_EQ(spotifyPollScript(), R"(try
    tell application "Spotify"
        if it is running then
            set trackName to name of current track
            set artistName to artist of current track
            set albumName to album of current track
            set isPlaying to player state is playing
            return trackName & "||" & artistName & "||" & albumName & "||" & isPlaying
        else
            return "notrunning"
        end if
    end tell
on error
    return "error"
end try)");
    EXPECT_EQ(musicPollScript().size(), 543U);
    EXPECT_EQ(spotifyPollScript().size(), 470U);
}

TEST(PlayerScriptsTest, AnswersAreTheWireFormat)
{
    EXPECT_STREQ(poll::notRunning, "notrunning");
    EXPECT_STREQ(poll::failed, "error");
    EXPECT_EQ(poll::write({"Song", "Artist", "Album", true, false}), "Song||Artist||Album||true||false");
    EXPECT_EQ(poll::write({"Song", "Artist", "Album", false, true}), "Song||Artist||Album||false||true");
    EXPECT_EQ(poll::write({"Song", "", "", false, std::nullopt}), "Song||||||false");
}

TEST(PlayerScriptsTest, VolumeCommandsAreTheWireFormat)
{
    EXPECT_EQ(volumeScript({"Music", std::nullopt}), "tell application \"Music\" to get sound volume");
    EXPECT_EQ(volumeScript({"Spotify", std::nullopt}), "tell application \"Spotify\" to get sound volume");
    EXPECT_EQ(volumeScript({"Music", 35}), "tell application \"Music\" to set sound volume to 35");
    EXPECT_EQ(volumeScript({"Spotify", 0}), "tell application \"Spotify\" to set sound volume to 0");
}

TEST(PlayerScriptsTest, VolumeCommandsAreRecognised)
{
    for (const auto& command :
         {VolumeCommand{"Music", std::nullopt}, VolumeCommand{"Spotify", 0}, VolumeCommand{"Music", 100},
          VolumeCommand{"Any player", 7}, VolumeCommand{"Music", 99}}) {
        EXPECT_EQ(parseVolumeScript(volumeScript(command)), command);
    }
}

TEST(PlayerScriptsTest, AnythingElseIsNoVolumeCommand)
{
    const std::string set = "tell application \"Music\" to set sound volume to ";
    for (const auto* number :
         {"", "-1", "+5", "05", "101", "1000", "4294967301", "5 ", "5.0", "5:", "5/", "x"}) {
        EXPECT_EQ(parseVolumeScript(set + number), std::nullopt) << number;
    }
    EXPECT_EQ(parseVolumeScript(musicPollScript()), std::nullopt);
    EXPECT_EQ(parseVolumeScript("tell application \"Music\" to get sound volume\n"), std::nullopt);
    EXPECT_EQ(parseVolumeScript("Tell application \"Music\" to get sound volume"), std::nullopt);
    EXPECT_EQ(parseVolumeScript("tell application \"Music"), std::nullopt);
    EXPECT_EQ(parseVolumeScript(""), std::nullopt);
}

}  // namespace
}  // namespace sonvara::test
