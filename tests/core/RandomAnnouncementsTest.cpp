// Random reports, stops and settings against a model of what may be said.
#include "SpeechManagerFixture.h"
#include "speech/AnnouncementPolicy.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <random>
#include <string>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

struct Track {
    std::string title;
    std::string artist;
    std::string album;
};

/// Drives a speech manager and knows which title, if any, it may speak next.
class RandomAnnouncements : public SpeechManagerFixture {
protected:
    void play(std::uint32_t seed)
    {
        random_.seed(seed);
        desktop.time.shuffle(seed);
        desktop.files.executables = {"/usr/bin/claude"};
        desktop.players.music.latency = std::chrono::milliseconds(draw(300));
        desktop.launcher.behaviour.answer = [](const ChildProcessSetup& setup) {
            const auto& prompt = setup.arguments.back();
            const auto title = prompt.find("Track: ") + 7;
            return "Listen to <" + prompt.substr(title, prompt.find('\n', title) - title) + ">\n";
        };
        desktop.voice.onSpeak = [this](const std::string& line) { heard(line); };
        for (int i = 0; i < 200; ++i) act();
        mayBeSpoken_.reset();
        stop();
        desktop.time.advance(1min);
        EXPECT_FALSE(desktop.voice.isSpeaking());
    }
    int heardLines = 0;

private:
    std::uint32_t draw(std::uint32_t below)
    {
        return std::uniform_int_distribution<std::uint32_t>(0, below - 1)(random_);
    }
    void act()
    {
        desktop.launcher.behaviour.runsFor = std::chrono::milliseconds(draw(6'000));
        desktop.launcher.behaviour.exitStatus = draw(4) == 0 ? 1 : 0;
        switch (draw(8)) {
        case 0: desktop.time.post([this] { stopInTurn(); }); break;
        case 1: desktop.defaults.values["announcementsEnabled"] = draw(5) != 0; break;
        case 2: desktop.defaults.values["aiIntros"] = draw(2) == 0; break;
        case 3:
            if (desktop.voice.isSpeaking()) desktop.voice.finish();
            break;
        default: reportAnyTrack();
        }
        desktop.time.advance(std::chrono::milliseconds(draw(2) == 0 ? 0 : draw(4'000)));
    }
    void stopInTurn()
    {
        mayBeSpoken_.reset();
        manager->stopNow();
    }
    void reportAnyTrack()
    {
        const Track track{draw(12) == 0 ? "" : "Song " + std::to_string(draw(6)),
                          "Artist " + std::to_string(draw(2)),
                          draw(3) == 0 ? "" : "Album " + std::to_string(draw(2))};
        desktop.time.post([this, track] { reportInTurn(track); });
    }
    void reportInTurn(const Track& track)
    {
        const bool announce = AnnouncementPolicy::shouldAnnounce(track.title, track.artist, track.album,
                                                                 last_.title, last_.artist, last_.album);
        if (!track.title.empty() && track.title != last_.title) {
            mayBeSpoken_.reset();
            last_ = track;
        }
        const auto enabled = desktop.defaults.values.find("announcementsEnabled");
        const bool isMuted = enabled != desktop.defaults.values.end() && !std::get<bool>(enabled->second);
        if (announce && !isMuted) mayBeSpoken_ = track.title;
        manager->speak(track.title, track.artist, track.album, false, "Music");
    }
    void heard(const std::string& line)
    {
        ++heardLines;
        ASSERT_TRUE(mayBeSpoken_) << "spoken although nothing may be: " << line;
        const bool isOffline = line.find(" " + *mayBeSpoken_ + " by ") != std::string::npos;
        const bool isFromTool = line == "Listen to <" + *mayBeSpoken_ + ">";
        EXPECT_TRUE(isOffline || isFromTool) << "a stale line: " << line << " for " << *mayBeSpoken_;
        mayBeSpoken_.reset();  // at most one line for each new track
    }

    std::mt19937 random_;
    Track last_;
    std::optional<std::string> mayBeSpoken_;
};

class RandomAnnouncementsTest : public RandomAnnouncements,
                                public testing::WithParamInterface<std::uint32_t> {};

TEST_P(RandomAnnouncementsTest, OnlyTheCurrentTrackIsAnnouncedAndOnlyOnce)
{
    play(GetParam());
    EXPECT_GT(heardLines, 3) << "the sequence must exercise what it checks";
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomAnnouncementsTest, testing::Range(1U, 41U));

}  // namespace
}  // namespace sonvara::test
