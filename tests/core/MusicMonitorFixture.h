// A monitor of two players, and the names that it publishes.
#pragma once

#include "fakes/FakeDesktop.h"
#include "monitor/MusicMonitor.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace sonvara::test {

class MusicMonitorTest : public testing::Test {
protected:
    FakeDesktop desktop;
    DJLog* log = &DJLog::shared();
    std::shared_ptr<MusicMonitor> monitor;
    std::vector<std::string> names;  // every published track name, after the first
    Subscription nameSubscription;

    void start()
    {
        monitor = MusicMonitor::create(desktop.platform);
        nameSubscription =
            monitor->trackName.subscribe([this](const std::string& name) { names.push_back(name); });
        names.clear();
    }
    static FakePlayers::Player playing(const char* title)
    {
        FakePlayers::Player player;
        player.isRunning = true;
        player.isPlaying = true;
        player.title = title;
        player.artist = "Artist A";
        player.album = "Album A";
        return player;
    }
    static FakePlayers::Player paused(const char* title)
    {
        auto player = playing(title);
        player.isPlaying = false;
        return player;
    }
    static Notification event(const char* name, const char* state, const char* title)
    {
        return {name, UserInfo{{"Player State", std::string(state)}, {"Name", std::string(title)}}};
    }
    void answerMusicPollWith(const std::string& text)
    {
        desktop.players.music.pollResult = ScriptResult::ofText(text);
    }
    [[nodiscard]] std::vector<std::string> errors() const
    {
        return desktop.systemLog.texts(LogLevel::error, "MusicMonitor");
    }
};

}  // namespace sonvara::test
