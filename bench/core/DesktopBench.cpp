// Parts of the core that need a desktop, on fakes. The fakes' own work is in the figures: for a whole track
// change, that is several turns between threads.
#include "app/AppDelegate.h"
#include "fakes/FakeDesktop.h"
#include "support/PlayerScripts.h"

#include <benchmark/benchmark.h>

#include <deque>
#include <memory>
#include <string>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

const std::string message = "Spoke: Now playing Harbour Lamps by The Null Sinks, from First Light.";

void appendOurs(benchmark::State& state)
{
    FakeDesktop desktop;
    const auto append = [&desktop] {
        DJLog::shared().log(message, DJLog::Level::info);
        desktop.time.run();
    };
    for (std::size_t i = 0; i < DJLog::maxEntries; ++i) append();
    for (auto _ : state) append();
}
BENCHMARK(appendOurs)->Name("append to a full activity log/ours");

void appendDeque(benchmark::State& state)
{
    std::deque<DJLog::Entry> entries(DJLog::maxEntries);
    for (auto _ : state) {
        entries.push_back({std::string(36, '0'), WallTime{}, DJLog::Level::info, message});
        entries.pop_front();
    }
}
BENCHMARK(appendDeque)->Name("append to a full activity log/std::deque");

/// The application, started and with one player that plays.
class Session {
public:
    Session()
    {
        desktop_.players.music.isRunning = true;
        desktop_.players.music.isPlaying = true;
        delegate_->applicationDidFinishLaunching();
        change();
        settle();
    }

    /// From the player's notification to the line in the voice's hands.
    void change()
    {
        auto& music = desktop_.players.music;
        const auto number = std::to_string(++number_);
        music.title = "Track " + number;
        music.artist = "Artist";
        music.album = "Album " + number;
        desktop_.notifications.deliver(FakePlayers::notificationOf(music, musicNotification));
        desktop_.time.run();
    }

    /// The line ends, and the fakes forget what they have seen of it.
    void settle()
    {
        while (desktop_.voice.isSpeaking()) desktop_.voice.finish();
        desktop_.time.advance(2s);
        desktop_.voice.lines = {};
        desktop_.players.scripts = {};
        desktop_.players.volumeCommands = {};
        desktop_.systemLog.messages = {};
    }

    [[nodiscard]] bool hasSpoken() const { return !desktop_.voice.lines.empty(); }
    void openMenu() const { desktop_.statusBar.state.menu->open(); }

private:
    FakeDesktop desktop_;
    std::shared_ptr<AppDelegate> delegate_ = std::make_shared<AppDelegate>(desktop_.platform);
    int number_ = 0;
};

void openMenu(benchmark::State& state)
{
    const Session session;
    for (auto _ : state) session.openMenu();
}
BENCHMARK(openMenu)->Name("make the menu's value/ours");

void changeTrack(benchmark::State& state)
{
    Session session;
    for (auto _ : state) {
        session.change();
        state.PauseTiming();
        if (!session.hasSpoken()) state.SkipWithError("no line was spoken");
        session.settle();
        state.ResumeTiming();
    }
}
BENCHMARK(changeTrack)
    ->Name("one track change through the core, fakes included/ours")
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace sonvara::test
