// Random sessions of a listener against the rules that always hold, with every thread's turn in random order.
#include "app/AppDelegate.h"
#include "fakes/FakeDesktop.h"
#include "monitor/MusicMonitor.h"
#include "support/PlayerScripts.h"
#include "ui/SettingsView.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

/// A listener who skips, pauses, mutes, changes settings and switches players at random.
class RandomSession {
public:
    explicit RandomSession(std::uint32_t seed) : random_(seed)
    {
        desktop_.time.shuffle(seed);
        desktop_.files.executables = {"/usr/bin/claude"};
        for (auto* player : {&desktop_.players.music, &desktop_.players.spotify}) {
            player->isRunning = true;
            player->latency = std::chrono::milliseconds(draw(3) == 0 ? draw(400) : 0);
        }
        delegate_ = std::make_shared<AppDelegate>(desktop_.platform);
        delegate_->applicationDidFinishLaunching();
        names_ =
            delegate_->musicMonitor->trackName.subscribe([this](const std::string& name) { hear(name); });
    }

    void act()
    {
        switch (draw(12)) {
        case 0:
        case 1:
        case 2: changeTrack(); break;
        case 3: setPlaying(!player().isPlaying); break;
        case 4: notify(); break;  // repeats what is known
        case 5:
        case 6:
        case 7: setAnySwitch(); break;
        case 8: usesSpotify_ = draw(2) == 0; break;
        case 9: player().isRunning = draw(3) != 0; break;
        default:
            if (desktop_.voice.isSpeaking()) desktop_.voice.finish();
        }
        desktop_.launcher.behaviour.output = "AI says " + std::to_string(draw(1'000'000)) + "\n";
        desktop_.launcher.behaviour.runsFor = std::chrono::milliseconds(draw(30'000));
        desktop_.launcher.behaviour.exitStatus = draw(4) == 0 ? 1 : 0;
        desktop_.time.advance(std::chrono::milliseconds(draw(4'000)));
    }

    /// The listener stops everything; whatever is under way comes to its end.
    void windDown()
    {
        for (auto* each : {&desktop_.players.music, &desktop_.players.spotify}) each->isPlaying = false;
        notify();
        desktop_.time.advance(2min);
    }

    void check() const
    {
        checkOneLinePerNewTrack();
        checkVolumeCommands();
        EXPECT_FALSE(desktop_.voice.isSpeaking()) << "a stop ends every line";
    }
    [[nodiscard]] std::size_t spokenLines() const { return desktop_.voice.lines.size(); }

private:
    std::uint32_t draw(std::uint32_t below)
    {
        return std::uniform_int_distribution<std::uint32_t>(0, below - 1)(random_);
    }
    FakePlayers::Player& player() { return usesSpotify_ ? desktop_.players.spotify : desktop_.players.music; }
    void changeTrack()
    {
        const auto number = std::to_string(draw(8));
        player().title = "Song " + number;
        player().artist = "Artist " + std::to_string(draw(2));
        player().album = draw(3) == 0 ? "" : "Album " + std::to_string(draw(2));
        setPlaying(true);
    }
    void setAnySwitch()
    {
        std::vector<const Toggle*> switches;
        for (const auto& section : settings_->sections) {
            for (const auto& row : section.rows) {
                if (const auto* toggle = std::get_if<Toggle>(&row)) switches.push_back(toggle);
            }
        }
        switches.at(draw(static_cast<std::uint32_t>(switches.size())))->isOn.set(draw(4) != 0);
    }
    void setPlaying(bool isPlaying)
    {
        player().isPlaying = isPlaying;
        notify();
    }
    void notify()
    {
        if (player().title.empty()) return;
        desktop_.notifications.deliver(
            FakePlayers::notificationOf(player(), usesSpotify_ ? spotifyNotification : musicNotification));
    }

    void hear(const std::string& name)
    {
        if (name.empty() || name == lastName_) return;
        lastName_ = name;
        ++newTracks_;
    }

    /// A generation is used up by each new track, so there can be no more lines than changes of the title.
    void checkOneLinePerNewTrack() const
    {
        const auto announced = desktop_.systemLog.texts(LogLevel::debug, "Speech");
        std::size_t lines = 0;
        for (const auto& message : announced) lines += message.starts_with("Announcing: ") ? 1U : 0U;
        EXPECT_EQ(lines, desktop_.voice.lines.size());
        EXPECT_LE(lines, newTracks_);
        for (const auto& line : desktop_.voice.lines) {
            EXPECT_NE(line.ending, FakeVoice::Ending::none) << line.utterance.line;
        }
    }

    /// Every write is the ducked value of a read before it, or puts a value back that was read before it.
    void checkVolumeCommands() const
    {
        for (const std::string name : {"Music", "Spotify"}) {
            int volume = FakePlayers::Player().volume;
            std::set<int> expected;
            std::size_t reads = 0;
            std::size_t writes = 0;
            for (const auto& command : desktop_.players.volumeCommands) {
                if (!command.starts_with(name)) continue;
                if (command.back() == '?') {
                    ++reads;
                    expected.insert({volume, std::max(35 * volume / 100, 12)});
                } else {
                    ++writes;
                    volume = std::stoi(command.substr(name.size() + 1));
                    EXPECT_TRUE(expected.contains(volume)) << command;
                }
                EXPECT_LE(writes, 2 * reads) << "one duck and at most one restore for each read";
            }
        }
    }

    std::mt19937 random_;
    FakeDesktop desktop_;
    std::shared_ptr<AppDelegate> delegate_;
    std::shared_ptr<const Form> settings_ = SettingsView::create(desktop_.platform)->form();
    bool usesSpotify_ = false;
    std::string lastName_;
    std::size_t newTracks_ = 0;
    Subscription names_;
};

TEST(RandomSessionTest, TheRulesHoldInEverySession)
{
    std::size_t spoken = 0;
    for (std::uint32_t seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSession session(seed);
        for (int i = 0; i < 60; ++i) session.act();
        session.windDown();
        session.check();
        spoken += session.spokenLines();
        if (testing::Test::HasFailure()) return;
    }
    EXPECT_GT(spoken, 200U) << "the sessions must exercise what they check";
}

}  // namespace
}  // namespace sonvara::test
