#include "PlayersFixture.h"

#include "platform/linux/players/PlayerScriptRunner.h"
#include "support/PlayerScripts.h"

#include <string>
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

TEST(PlayerScriptRunnerTest, APollIsBehindWhatTheMainThreadHasToDo)
{
    std::vector<std::string> order;
    PlayerScriptRunner runner([&](PlayerKind) { order.emplace_back("a poll"); });
    QObject main;
    (void)runner.run(musicPollScript());
    QMetaObject::invokeMethod(&main, [&] { order.emplace_back("a line"); }, Qt::QueuedConnection);
    EXPECT_TRUE(eventually([&] { return order.size() == 2; }));
    EXPECT_EQ(order, (std::vector<std::string>{"a line", "a poll"}));
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
