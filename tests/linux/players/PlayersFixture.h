// The adapter on a private bus, with what it posts and logs, and a way to run scripts and to wait.
#pragma once

#include "FakePlayer.h"
#include "PrivateBus.h"

#include "helpers/EventLoop.h"
#include "helpers/RecordingLog.h"
#include "platform/linux/players/MprisPlayers.h"

#include <QProcess>
#include <QThread>

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace sonvara::test {

/// A fake player in a process of its own.
class PlayerProcess {
public:
    PlayerProcess(const PrivateBus& bus, const QStringList& names);
    ~PlayerProcess();
    void say(const QByteArray& line);
    void quit();
    [[nodiscard]] qint64 id() const { return process_.processId(); }

private:
    QProcess process_;
};

using Posts = std::vector<std::string>;

class PlayersTest : public testing::Test {
protected:
    /// Makes the adapter; players that are on the bus already are there at its start.
    void make();
    /// Makes the adapter and polls once, which starts it.
    void start();

    /// Waits until as many notifications have come; gives them, each as "PLAYER STATE TITLE/ARTIST/ALBUM".
    const Posts& postsUntil(std::size_t count);

    /// Runs a script on a worker thread while the main thread goes on.
    ScriptResult run(const std::string& script);
    std::string pollMusic();
    std::string pollSpotify();
    /// Runs a script until its text is `expected`; gives the last one.
    std::string runUntil(const std::string& script, const std::string& expected);

    [[nodiscard]] FakePlayer makePlayer(const QStringList& names) { return {bus.connect(), names}; }

    PrivateBus bus;
    RecordingLog log;
    Posts posts;
    std::unique_ptr<MprisPlayers> players;

private:
    std::vector<Subscription> subscriptions_;
};

/// Starts `work` on another thread, whose end wakes the event loop.
std::unique_ptr<QThread> startWorker(const std::function<void()>& work);

/// Runs `work` on another thread and the event loop until it is done; gives how long it took.
std::chrono::milliseconds onWorker(const std::function<void()>& work);

inline const std::string getMusicVolume = R"(tell application "Music" to get sound volume)";
inline const std::string getSpotifyVolume = R"(tell application "Spotify" to get sound volume)";
inline const std::string setMusicVolume = R"(tell application "Music" to set sound volume to )";

}  // namespace sonvara::test
