// The status item over a monitor and a DJ.
#pragma once

#include "ui/StatusBarController.h"

#include "fakes/FakeDesktop.h"
#include "monitor/MusicMonitor.h"
#include "speech/SpeechManager.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace sonvara::test {

class StatusBarControllerTest : public testing::Test {
protected:
    FakeDesktop desktop;
    DJLog* log = &DJLog::shared();
    std::shared_ptr<MusicMonitor> monitor = MusicMonitor::create(desktop.platform);
    std::shared_ptr<SpeechManager> speech = SpeechManager::create(desktop.platform);
    std::shared_ptr<StatusBarController> controller;

    void start() { controller = StatusBarController::create(desktop.platform, monitor, speech); }
    [[nodiscard]] StatusBarState& bar() { return desktop.statusBar.state; }
    [[nodiscard]] const MenuItem& item(std::size_t number) { return bar().menu->items.at(number - 1); }
    [[nodiscard]] std::vector<std::string> messages(LogLevel level) const
    {
        return desktop.systemLog.published(level, "StatusBarController");
    }
    void nowPlaying(bool isPlaying, const std::string& track, const std::string& artist)
    {
        monitor->isPlaying.set(isPlaying);
        monitor->artistName.set(artist);
        monitor->trackName.set(track);
        controller->menuWillOpen();
    }
    void say(const std::string& line)
    {
        log->lastChat.set(line);
        controller->menuWillOpen();
    }
};

}  // namespace sonvara::test
