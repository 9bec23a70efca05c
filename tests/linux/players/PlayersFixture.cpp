#include "PlayersFixture.h"

#include "support/PlayerScripts.h"

#include <QCoreApplication>
#include <QEventLoop>

namespace sonvara::test {
namespace {

std::string describe(const Notification& notification)
{
    const auto text = [&](const char* key) { return std::get<std::string>(notification.userInfo->at(key)); };
    const std::string player = notification.name == "com.apple.Music.playerInfo" ? "Music " : "Spotify ";
    const auto loved = std::get<bool>(notification.userInfo->at("Loved")) ? " loved" : "";
    return player + text("Player State") + " " + text("Name") + "/" + text("Artist") + "/" + text("Album") +
           loved;
}

}  // namespace

PlayerProcess::PlayerProcess(const PrivateBus& bus, const QStringList& names)
{
    endWithThisProcess(process_);
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(FAKE_PLAYER, QStringList{bus.address()} + names);
    while (process_.state() != QProcess::NotRunning && !process_.canReadLine() &&
           process_.waitForReadyRead(20000)) {
    }
    EXPECT_EQ(process_.readLine(), "ready\n");
}

PlayerProcess::~PlayerProcess()
{
    process_.kill();
    process_.waitForFinished(10000);
}

void PlayerProcess::say(const QByteArray& line)
{
    process_.write(line + '\n');
    EXPECT_TRUE(process_.waitForBytesWritten(10000));
}

void PlayerProcess::quit()
{
    process_.closeWriteChannel();
    EXPECT_TRUE(process_.waitForFinished(10000));
}

void PlayersTest::start()
{
    make();
    pollMusic();
}

void PlayersTest::make()
{
    players = std::make_unique<MprisPlayers>(bus.connect(), log);
    for (const auto* name : {"com.apple.Music.playerInfo", "com.spotify.client.PlaybackStateChanged"})
        subscriptions_.push_back(players->notificationCenter().addObserver(
            name, [this](const Notification& each) { posts.push_back(describe(each)); }));
}

const Posts& PlayersTest::postsUntil(std::size_t count)
{
    EXPECT_TRUE(eventually([&] { return posts.size() >= count; })) << posts.size() << " of " << count;
    return posts;
}

ScriptResult PlayersTest::run(const std::string& script)
{
    ScriptResult result;
    onWorker([&] { result = players->scriptRunner().run(script); });
    return result;
}

std::string PlayersTest::pollMusic()
{
    return run(musicPollScript()).text.value_or("(no text)");
}

std::string PlayersTest::pollSpotify()
{
    return run(spotifyPollScript()).text.value_or("(no text)");
}

std::string PlayersTest::runUntil(const std::string& script, const std::string& expected)
{
    std::string text;
    eventually([&] { return (text = run(script).text.value_or("(no text)")) == expected; });
    return text;
}

std::unique_ptr<QThread> startWorker(const std::function<void()>& work)
{
    std::unique_ptr<QThread> thread(QThread::create(work));
    QObject::connect(thread.get(), &QThread::finished, QCoreApplication::instance(), [] {});
    thread->start();
    return thread;
}

std::chrono::milliseconds onWorker(const std::function<void()>& work)
{
    const auto begin = std::chrono::steady_clock::now();
    const auto thread = startWorker(work);
    while (!thread->isFinished()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
}

}  // namespace sonvara::test
