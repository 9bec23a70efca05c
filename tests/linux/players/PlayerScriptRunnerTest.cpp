#include "PlayersFixture.h"

#include "platform/linux/players/PlayerScriptRunner.h"
#include "support/PlayerScripts.h"

#include <QEvent>

namespace sonvara::test {
namespace {

TEST(PlayerScriptRunnerTest, APollIsAnsweredOnTheMainThread)
{
    const auto* const main = QThread::currentThread();
    PlayerScriptRunner runner([&](PlayerKind kind) {
        EXPECT_EQ(QThread::currentThread(), main);
        return kind == PlayerKind::spotify ? "S" : "M";
    });
    ScriptResult music;
    ScriptResult spotify;
    onWorker([&] {
        music = runner.run(musicPollScript());
        spotify = runner.run(spotifyPollScript());
    });
    EXPECT_EQ(music.text, "M");
    EXPECT_EQ(spotify.text, "S");
}

TEST(PlayerScriptRunnerTest, AnyOtherTextIsAnError)
{
    PlayerScriptRunner runner([](PlayerKind) { return "M"; });
    const auto result = runner.run("beep");
    EXPECT_TRUE(result.error);
    EXPECT_FALSE(result.text);
}

TEST(PlayerScriptRunnerTest, APollFailsWhenTheMainThreadDoesNotComeToIt)
{
    PlayerScriptRunner runner([](PlayerKind) { return "M"; });
    EXPECT_EQ(runner.run(musicPollScript()).text, "error");  // this thread is the one that would answer
}

TEST(PlayerScriptRunnerTest, APollThatWaitsFailsWhenTheRunnerGoes)
{
    // Sees the poll arrive, and keeps it from being answered.
    struct Filter : QObject {
        bool eventFilter(QObject*, QEvent*) override { return hasArrived = true; }
        bool hasArrived = false;
    } filter;
    auto runner = std::make_unique<PlayerScriptRunner>([](PlayerKind) { return "M"; });
    runner->installEventFilter(&filter);
    ScriptResult result;
    const auto worker = startWorker([&] { result = runner->run(musicPollScript()); });
    EXPECT_TRUE(eventually([&] { return filter.hasArrived; }));
    runner.reset();
    EXPECT_TRUE(eventually([&] { return worker->isFinished(); }));
    EXPECT_EQ(result.text, "error");
}

}  // namespace
}  // namespace sonvara::test
