// One intro request: finding the tool, running it within its time, reporting what came of it.
#include "AIDJFixture.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Level = DJLog::Level;

TEST_F(AIDJTest, ASuccessfulCallLeavesExactlyTwoEntries)
{
    requestAndWait();
    EXPECT_THAT(answers, ElementsAre("Here comes Song A."));
    EXPECT_THAT(entries(), ElementsAre(Entry("Calling claude for an intro\u2026", Level::info),
                                       Entry("claude intro: Here comes Song A.", Level::success)));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(AIDJTest, ClaudeIsRunWithItsArgumentsAndThePrompt)
{
    requestAndWait();
    EXPECT_EQ(child().executable, "/usr/local/bin/claude");
    EXPECT_THAT(child().arguments, ElementsAre("-p", "--strict-mcp-config",
                                               AIDJ::buildPrompt("Song A", "Band B", "Album C", true)));
}

TEST_F(AIDJTest, GeminiIsRunWithItsArgumentsAndThePrompt)
{
    desktop.defaults.values["aiProvider"] = std::string("geminiCLI");
    requestAndWait();
    EXPECT_EQ(child().executable, "/usr/local/bin/gemini");
    EXPECT_THAT(child().arguments,
                ElementsAre("--skip-trust", "-p", AIDJ::buildPrompt("Song A", "Band B", "Album C", true)));
    EXPECT_EQ(entries()[0].first, "Calling gemini for an intro\u2026");
    EXPECT_EQ(child().environment.at("GEMINI_CLI_TRUST_WORKSPACE"), "true");
}

TEST_F(AIDJTest, AnUnknownProviderIsClaudeAndTheChoiceIsReadForEachRequest)
{
    for (const auto* stored : {"", "GeminiCLI", "other"}) {
        desktop.defaults.values["aiProvider"] = std::string(stored);
        requestAndWait();
        EXPECT_EQ(desktop.launcher.children.back()->setup.executable, "/usr/local/bin/claude") << stored;
    }
    desktop.defaults.values["aiProvider"] = true;
    requestAndWait();
    EXPECT_EQ(desktop.launcher.children.back()->setup.executable, "/usr/local/bin/claude");
    desktop.defaults.values["aiProvider"] = std::string("geminiCLI");
    requestAndWait();
    EXPECT_EQ(desktop.launcher.children.back()->setup.executable, "/usr/local/bin/gemini");
}

TEST_F(AIDJTest, TheFirstDirectoryThatHasAnExecutableWins)
{
    desktop.files.executables = {"/usr/local/bin/claude", "/opt/homebrew/bin/claude", "/bin/claude"};
    requestAndWait();
    EXPECT_EQ(child().executable, "/opt/homebrew/bin/claude");
    desktop.files.executables = {"/bin/claude", "/usr/bin/claude"};
    requestAndWait();
    EXPECT_EQ(child(1).executable, "/usr/bin/claude");
}

TEST_F(AIDJTest, AToolThatIsOnlyElsewhereIsNotFoundEvenIfItIsOnThePath)
{
    desktop.environment.values["PATH"] = "/home/listener/bin";
    desktop.files.executables = {"/home/listener/bin/claude"};
    requestAndWait();
    const std::string message = "claude CLI not found in /opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin";
    EXPECT_THAT(answers, ElementsAre(std::nullopt));
    EXPECT_THAT(entries(), ElementsAre(Entry(message, Level::error)));
    EXPECT_THAT(errors(), ElementsAre(message));
    EXPECT_EQ(desktop.systemLog.messages.back().published, message) << "not redacted";
    EXPECT_THAT(desktop.launcher.children, IsEmpty());
}

TEST_F(AIDJTest, TheChildHasTheSearchDirectoriesBeforeTheOldPathAndTrustsItsFolder)
{
    requestAndWait();
    EXPECT_EQ(child().environment.at("PATH"), "/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/games");
    EXPECT_EQ(child().environment.at("GEMINI_CLI_TRUST_WORKSPACE"), "true");
    EXPECT_EQ(child().environment.at("HOME"), "/home/listener");
    EXPECT_EQ(child().environment.size(), 3U);
    EXPECT_EQ(child().directory, "/temporary/Sonvara-AIDJ");
    EXPECT_THAT(desktop.files.createdDirectories, ElementsAre("/temporary/Sonvara-AIDJ"));
}

TEST_F(AIDJTest, AMissingPathLeavesATrailingColon)
{
    desktop.environment.values.erase("PATH");
    requestAndWait();
    EXPECT_EQ(child().environment.at("PATH"), "/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:");
}

TEST_F(AIDJTest, AFolderThatCannotBeMadeIsIgnored)
{
    desktop.files.canCreateDirectories = false;
    requestAndWait();
    EXPECT_THAT(answers, ElementsAre("Here comes Song A."));
}

TEST_F(AIDJTest, ALaunchErrorNamesTheSystemsReason)
{
    desktop.launcher.behaviour.launchError = "Exec format error";
    requestAndWait();
    EXPECT_THAT(answers, ElementsAre(std::nullopt));
    EXPECT_THAT(entries(), ElementsAre(Entry("Calling claude for an intro\u2026", Level::info),
                                       Entry("claude launch failed: Exec format error", Level::error)));
    EXPECT_THAT(errors(), ElementsAre("claude launch failed: Exec format error"));
}

TEST_F(AIDJTest, TheFolderIsThereBeforeTheToolBegins)
{
    desktop.launcher.behaviour.answer = [this](const ChildProcessSetup& setup) {
        EXPECT_THAT(desktop.files.createdDirectories, ElementsAre(setup.directory));
        return "Here comes Song A.\n";
    };
    requestAndWait();
    EXPECT_THAT(answers, ElementsAre("Here comes Song A."));
}

TEST_F(AIDJTest, ANonZeroExitStatusIsReported)
{
    desktop.launcher.behaviour.exitStatus = 41;
    requestAndWait();
    EXPECT_THAT(answers, ElementsAre(std::nullopt));
    EXPECT_EQ(entries().back(), Entry("claude exited 41", Level::error));
    EXPECT_THAT(errors(), ElementsAre("claude exited 41"));
}

TEST_F(AIDJTest, OutputThatIsNotUtf8IsReportedAsExitedWithStatusZero)
{
    desktop.launcher.behaviour.output = "caf\xe9\n";
    requestAndWait();
    EXPECT_THAT(answers, ElementsAre(std::nullopt));
    EXPECT_EQ(entries().back(), Entry("claude exited 0", Level::error));
    EXPECT_THAT(errors(), ElementsAre("claude exited 0"));
}

TEST_F(AIDJTest, OutputOfLineFeedsOrBlanksIsUnusableAndNotInTheSystemLog)
{
    for (const auto* output : {"", "\n\n", "   \n"}) {
        desktop.launcher.behaviour.output = output;
        requestAndWait();
        EXPECT_EQ(entries().back(), Entry("claude returned no usable output", Level::error));
    }
    EXPECT_THAT(answers, ElementsAre(std::nullopt, std::nullopt, std::nullopt));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(AIDJTest, ManyRequestsMayOverlap)
{
    desktop.launcher.behaviour.runsFor = 20s;
    for (int i = 0; i < 50; ++i) request();
    desktop.time.advance(20s);
    EXPECT_EQ(answers.size(), 50U);
    EXPECT_EQ(desktop.launcher.children.size(), 50U);
}

TEST_F(AIDJTest, ARequestKeepsItsComponentAlive)
{
    request();
    const std::weak_ptr<AIDJ> weak = aiDJ;
    aiDJ.reset();
    desktop.time.advance(1s);
    EXPECT_THAT(answers, ElementsAre("Here comes Song A."));
    EXPECT_TRUE(weak.expired());
}

TEST_F(AIDJTest, IsAlwaysAvailable)
{
    desktop.files.executables.clear();
    EXPECT_TRUE(aiDJ->isAvailable());
}

}  // namespace
}  // namespace sonvara::test
