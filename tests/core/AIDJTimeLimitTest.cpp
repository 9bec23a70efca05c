// A tool has twenty-five seconds.
#include "AIDJFixture.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <optional>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Level = DJLog::Level;

TEST_F(AIDJTest, AfterALaunchErrorTheTimeLimitFindsNothingToEnd)
{
    desktop.launcher.behaviour.launchError = "Exec format error";
    requestAndWait();
    EXPECT_EQ(desktop.time.pendingWork(), 1U) << "the time limit stays scheduled";
    desktop.time.advance(25s);
    EXPECT_EQ(desktop.time.pendingWork(), 0U);
    EXPECT_EQ(desktop.launcher.children[0]->terminateRequests, 0);
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(AIDJTest, ATimeLimitKeepsTheToolAboutWhichItAsks)
{
    desktop.launcher.behaviour.launchError = "Exec format error";
    requestAndWait();
    const std::weak_ptr weak = desktop.launcher.children[0];
    desktop.launcher.children.clear();
    EXPECT_FALSE(weak.expired());
    desktop.time.advance(25s);
    EXPECT_TRUE(weak.expired());
}

TEST_F(AIDJTest, AToolThatSleepsAMinuteIsTerminatedAfterTwentyFiveSeconds)
{
    desktop.launcher.behaviour.runsFor = 1min;
    requestAndWait(24'999ms);
    EXPECT_THAT(answers, IsEmpty());
    EXPECT_EQ(desktop.launcher.children[0]->terminateRequests, 0);
    desktop.time.advance(1ms);
    EXPECT_EQ(desktop.launcher.children[0]->terminateRequests, 1);
    EXPECT_THAT(answers, ElementsAre(std::nullopt));
    EXPECT_THAT(entries(), ElementsAre(Entry("Calling claude for an intro\u2026", Level::info),
                                       Entry("claude exited 143", Level::error)));
}

TEST_F(AIDJTest, AToolThatIgnoresTheTerminateRequestHoldsItsOwnRequestOnly)
{
    desktop.launcher.behaviour.runsFor = 10min;
    desktop.launcher.behaviour.ignoresTerminate = true;
    requestAndWait(30s);
    desktop.launcher.behaviour = ToolBehaviour();
    desktop.launcher.behaviour.output = "Second.\n";
    requestAndWait();
    EXPECT_THAT(answers, ElementsAre("Second."));
}

TEST_F(AIDJTest, TheTimeLimitOfAToolThatEndedInTimeIsCancelled)
{
    desktop.launcher.behaviour.runsFor = 24s;
    requestAndWait(1min);
    EXPECT_THAT(answers, ElementsAre("Here comes Song A."));
    EXPECT_EQ(desktop.launcher.children[0]->terminateRequests, 0);
    EXPECT_THAT(desktop.time.postedQualities(),
                ElementsAre(QualityOfService::standard, QualityOfService::userInitiated))
        << "nothing has run at the limit";
}

TEST_F(AIDJTest, TheTimeLimitHoldsUntilTheToolHasEndedAndNotOnlyItsOutput)
{
    desktop.launcher.behaviour.lingersFor = 1min;
    requestAndWait(24'999ms);
    EXPECT_THAT(answers, IsEmpty());
    desktop.time.advance(1ms);
    EXPECT_EQ(desktop.launcher.children[0]->terminateRequests, 1);
    EXPECT_EQ(entries().back(), Entry("claude exited 143", Level::error));
}

TEST_F(AIDJTest, TheToolRunsAtUserInitiatedQualityAndItsTimeLimitAtTheStandardOne)
{
    desktop.launcher.behaviour.runsFor = 1min;
    requestAndWait(25s);
    EXPECT_THAT(
        desktop.time.postedQualities(),
        ElementsAre(QualityOfService::standard, QualityOfService::userInitiated, QualityOfService::standard));
}

}  // namespace
}  // namespace sonvara::test
