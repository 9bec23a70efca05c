// A very long session in virtual time: what the core holds on to does not grow.
#include "app/AppDelegate.h"
#include "fakes/FakeDesktop.h"
#include "support/PlayerScripts.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

namespace {
std::atomic<long> liveAllocations{0};
}

// Every allocation of this program is counted.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    void* const memory = std::malloc(size > 0 ? size : 1);
    if (memory != nullptr) ++liveAllocations;
    return memory;
}

void* operator new(std::size_t size)
{
    void* const memory = operator new(size, std::nothrow);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept
{
    if (memory == nullptr) return;
    --liveAllocations;
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    operator delete(memory);
}

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

class Session {
public:
    Session()
    {
        desktop_.files.executables = {"/usr/bin/claude"};
        desktop_.players.music.isRunning = true;
        delegate_->applicationDidFinishLaunching();
    }

    /// Two tracks out of three are worth a line, every fourth one by the tool; some are cut short.
    void play(int tracks)
    {
        for (int i = 0; i < tracks; ++i) playOne(++number_);
        forgetWhatTheFakesHaveSeen();
    }
    [[nodiscard]] int spoken() const { return spoken_; }
    [[nodiscard]] int volume() const { return desktop_.players.music.volume; }

private:
    void playOne(int number)
    {
        desktop_.defaults.values["aiIntros"] = number % 4 == 0;
        desktop_.launcher.behaviour.output = "About track " + std::to_string(number);
        auto& music = desktop_.players.music;
        music.isPlaying = true;
        music.title = "Track " + std::to_string(number);
        music.artist = "Artist";
        music.album = "Album " + std::to_string(number / 3);
        desktop_.notifications.deliver(FakePlayers::notificationOf(music, musicNotification));
        desktop_.time.advance(2s);
        if (number % 5 != 0 && desktop_.voice.isSpeaking()) desktop_.voice.finish();
        desktop_.time.advance(2s);
        if (number % 50 == 0) desktop_.statusBar.state.menu->open();
    }

    /// The fakes remember everything for tests that ask; here only the core is to be seen.
    void forgetWhatTheFakesHaveSeen()
    {
        while (desktop_.voice.isSpeaking()) desktop_.voice.finish();
        desktop_.time.run();
        spoken_ += static_cast<int>(desktop_.voice.lines.size());
        desktop_.voice.lines = {};
        desktop_.players.scripts = {};
        desktop_.players.volumeCommands = {};
        desktop_.systemLog.messages = {};
        desktop_.launcher.children = {};
        desktop_.files.createdDirectories = {};
    }

    FakeDesktop desktop_;
    std::shared_ptr<AppDelegate> delegate_ = std::make_shared<AppDelegate>(desktop_.platform);
    int number_ = 0;
    int spoken_ = 0;
};

TEST(SoakTest, TenThousandTracksLeaveNothingBehind)
{
    Session session;
    session.play(1000);  // the activity log is full by then
    const long before = liveAllocations;
    session.play(9000);
    const long after = liveAllocations;
    RecordProperty("allocations", std::to_string(before) + " -> " + std::to_string(after));
    EXPECT_LE(after, before + 20);
    EXPECT_GE(session.spoken(), 3300);
    EXPECT_EQ(session.volume(), 100);
}

}  // namespace
}  // namespace sonvara::test
