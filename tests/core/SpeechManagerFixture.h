// A speech manager on a desktop of fakes, for the tests of announcements and ducking.
#pragma once

#include "fakes/FakeDesktop.h"
#include "speech/SpeechManager.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace sonvara::test {

class SpeechManagerFixture : public testing::Test {
protected:
    FakeDesktop desktop;
    DJLog* log = &DJLog::shared();
    std::shared_ptr<SpeechManager> manager = SpeechManager::create(desktop.platform);

    SpeechManagerFixture() { desktop.players.music.isRunning = true; }

    /// The monitor reports this track of an album of its own, in a main-thread turn.
    void report(const std::string& track, const std::string& source = "Music")
    {
        reportFull(track, "Artist of " + track, "Album of " + track, false, source);
    }
    void reportFull(const std::string& track, const std::string& artist, const std::string& album,
                    bool favorited, const std::string& source)
    {
        desktop.time.post([=, this] {
            if (manager) manager->speak(track, artist, album, favorited, source);
        });
    }
    void stop()
    {
        desktop.time.post([this] { manager->stopNow(); });
    }
    [[nodiscard]] std::vector<std::string> debugMessages() const
    {
        return desktop.systemLog.published(LogLevel::debug, "Speech");
    }
    [[nodiscard]] int volume() const { return desktop.players.music.volume; }
    [[nodiscard]] const std::vector<std::string>& volumeCommands() const
    {
        return desktop.players.volumeCommands;
    }
};

}  // namespace sonvara::test
