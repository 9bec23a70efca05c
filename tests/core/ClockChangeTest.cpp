// The user sets the clock while music plays: announcements, polls and time limits do not notice.
#include "app/AppDelegate.h"
#include "fakes/FakeDesktop.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

/// What a listener hears, and when, of an evening in which the clock is set at its second track.
std::vector<std::string> eveningWith(VirtualTime::Duration jump)
{
    FakeDesktop desktop;
    desktop.defaults.values["aiIntros"] = true;
    desktop.files.executables = {"/usr/bin/claude"};
    desktop.launcher.behaviour.runsFor = 60s;  // past its time limit, so the offline line is spoken
    auto& music = desktop.players.music;
    music.isRunning = music.isPlaying = true;
    const auto delegate = std::make_shared<AppDelegate>(desktop.platform);
    delegate->applicationDidFinishLaunching();
    for (int number = 1; number <= 3; ++number) {
        music.title = "Song " + std::to_string(number);
        desktop.time.advance(10s);
        if (number == 2) desktop.time.setWallClockOffset(jump);
        desktop.time.advance(30s);
        if (desktop.voice.isSpeaking()) desktop.voice.finish();
        desktop.time.advance(1s);
    }
    std::vector<std::string> heard;
    for (const auto& line : desktop.voice.lines) {
        const auto& words = line.utterance.line;
        heard.push_back(words.substr(words.find("Song")) + " at " + std::to_string(line.handedOver.count()));
    }
    heard.push_back(std::to_string(desktop.players.scripts.size()) + " scripts");
    heard.push_back(std::to_string(music.volume));
    return heard;
}

TEST(ClockChangeTest, ADayForwardOrBackChangesNothing)
{
    const auto usual = eveningWith(0s);
    EXPECT_EQ(usual.size(), 5U) << "three lines, the scripts and the volume";
    EXPECT_EQ(eveningWith(24h), usual);
    EXPECT_EQ(eveningWith(-24h), usual);
}

TEST(ClockChangeTest, OnlyTheLogShowsTheTimeThatTheClockSays)
{
    FakeDesktop desktop;
    DJLog::shared().log("before", DJLog::Level::info);
    desktop.time.setWallClockOffset(-24h);
    DJLog::shared().log("after", DJLog::Level::info);
    desktop.time.run();
    const auto& entries = DJLog::shared().entries.get();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0]->message, "before") << "the order is that of the events";
    EXPECT_EQ(entries[0]->date - entries[1]->date, 24h);
}

}  // namespace
}  // namespace sonvara::test
