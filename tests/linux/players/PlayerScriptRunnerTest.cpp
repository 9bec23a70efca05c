#include "PlayersFixture.h"

#include "platform/linux/players/PlayerScriptRunner.h"
#include "support/PlayerScripts.h"

#include <vector>

namespace sonvara::test {
namespace {

TEST(PlayerScriptRunnerTest, APollIsAnsweredAtOnceWithWhatIsKnown)
{
    PlayerScriptRunner runner([](PlayerKind) {});
    EXPECT_EQ(runner.run(musicPollScript()).text, poll::notRunning);
    runner.know(PlayerKind::music, "M");
    runner.know(PlayerKind::spotify, "S");
    // This is the main thread: nothing of it is waited for.
    EXPECT_EQ(runner.run(musicPollScript()).text, "M");
    EXPECT_EQ(runner.run(spotifyPollScript()).text, "S");
}

TEST(PlayerScriptRunnerTest, TheMainThreadIsToldOfEachPoll)
{
    const auto* const main = QThread::currentThread();
    std::vector<PlayerKind> polls;
    PlayerScriptRunner runner([&](PlayerKind kind) {
        EXPECT_EQ(QThread::currentThread(), main);
        polls.push_back(kind);
    });
    onWorker([&] {
        (void)runner.run(musicPollScript());
        (void)runner.run(spotifyPollScript());
    });
    EXPECT_TRUE(eventually([&] { return polls.size() == 2; }));
    EXPECT_EQ(polls, (std::vector{PlayerKind::music, PlayerKind::spotify}));
}

TEST(PlayerScriptRunnerTest, AnyOtherTextIsAnError)
{
    PlayerScriptRunner runner([](PlayerKind) {});
    const auto result = runner.run("beep");
    EXPECT_TRUE(result.error);
    EXPECT_FALSE(result.text);
}

}  // namespace
}  // namespace sonvara::test
