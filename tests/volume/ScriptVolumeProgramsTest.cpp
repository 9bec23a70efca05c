// Volumes by scripts that never start an application and never wait long for one.
#include "volume/ScriptVolumePrograms.h"

#include "ports/ScriptRunner.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace sonvara::test {
namespace {

struct Recorder : ScriptRunner {
    std::vector<std::string> scripts;
    ScriptResult result;
    ScriptResult run(const std::string& source) override
    {
        scripts.push_back(source);
        return result;
    }
};

TEST(ScriptVolumeProgramsTest, AsksAndSetsOnlyWhatRunsAndAnswersSoon)
{
    Recorder scripts;
    ScriptVolumePrograms programs(scripts);
    scripts.result.text = "35";
    scripts.result.integer = 35;
    EXPECT_EQ(programs.volume("Music"), 35);
    EXPECT_TRUE(programs.setVolume("Music", 100));
    EXPECT_THAT(
        scripts.scripts,
        testing::ElementsAre(
            "with timeout of 2 seconds\n"
            "    if application \"Music\" is running then tell application \"Music\" to get sound volume\n"
            "end timeout",
            "with timeout of 2 seconds\n"
            "    if application \"Music\" is running then tell application \"Music\" to set sound volume to "
            "100\n"
            "end timeout"));
    EXPECT_EQ(programs.programOf("Spotify"), "Spotify");
}

TEST(ScriptVolumeProgramsTest, NoAnswerIsNoVolume)
{
    Recorder scripts;
    ScriptVolumePrograms programs(scripts);
    EXPECT_EQ(programs.volume("Music"), std::nullopt);
    scripts.result.error = "not allowed";
    EXPECT_EQ(programs.volume("Music"), std::nullopt);
    EXPECT_FALSE(programs.setVolume("Music", 100));
}

}  // namespace
}  // namespace sonvara::test
