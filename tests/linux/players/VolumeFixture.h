// Everything that guards the players' volume, between the core's commands and players on a private bus.
#pragma once

#include "PlayersFixture.h"

#include "helpers/TemporaryFolder.h"
#include "platform/linux/system/QtMainQueue.h"
#include "platform/linux/system/WorkerPool.h"
#include "platform/posix/PosixNoteStore.h"
#include "platform/posix/PosixSystem.h"
#include "platform/posix/VolumeGuard.h"
#include "support/PlayerScripts.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <optional>
#include <string>

namespace sonvara::test {

/// A voice that says nothing, and ends when the test says so.
struct SilentVoice final : SpeechSynthesizer {
    std::weak_ptr<SpeechSynthesizerDelegate> delegate;
    int lines = 0;

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> to) override { delegate = std::move(to); }
    void speak(SpeechUtterance) override { ++lines; }
    void stopSpeaking() override
    {
        while (lines > 0) end();
    }
    [[nodiscard]] std::string currentLanguageCode() const override { return "en"; }
    [[nodiscard]] std::optional<SpeechVoice> voiceForLanguage(const std::string&) const override
    {
        return {};
    }
    void end()
    {
        --lines;
        delegate.lock()->didFinish();
    }
};

class VolumeFixture : public PlayersTest {
protected:
    TemporaryFolder folder;
    SilentVoice voice;
    QtMainQueue mainQueue;
    PosixClock clock{"0"};
    PosixNoteStore notes{folder.path() + "/lowered-players"};
    WorkerPool workers;
    std::unique_ptr<VolumeGuard> guard;

    ~VolumeFixture() override
    {
        if (guard) guard->end();
        EXPECT_TRUE(workers.shutDown(std::chrono::seconds(5)));
        players.reset();
        guard.reset();
    }

    /// Our process begins, beside players that are there or come later.
    void begin()
    {
        make();
        guard = std::make_unique<VolumeGuard>(VolumeGuard::Below{players->volumes(), players->scriptRunner(),
                                                                 voice, mainQueue, workers, clock, notes,
                                                                 std::chrono::milliseconds(1000)});
        players->reportTo(guard->players());
        run(musicPollScript());  // as the core begins
    }
    /// It dies as by SIGKILL, when its last note is written, and begins anew.
    void beginAnew()
    {
        EXPECT_TRUE(guard->finish(std::chrono::seconds(5)));
        players.reset();
        guard.reset();
        begin();
    }
    /// A player that has begun to play.
    std::unique_ptr<FakePlayer> makePlaying(const QString& name, double volume = 1.0)
    {
        auto player = std::make_unique<FakePlayer>(bus.connect(), QStringList{name});
        player->set({{"Volume", volume}});
        begin();
        player->play("One");
        postsUntil(1);
        return player;
    }
    void untilReady()
    {
        EXPECT_FALSE(eventuallyWithin(std::chrono::milliseconds(3100), [] { return false; }));
    }
    static bool eventuallyWithin(std::chrono::milliseconds limit, const std::function<bool()>& condition)
    {
        const QDeadlineTimer end(limit);
        return eventually([&] { return condition() || end.hasExpired(); }) && condition();
    }

    ScriptResult run(const std::string& script)
    {
        ScriptResult result;
        onWorker([&] { result = guard->scriptRunner().run(script); });
        return result;
    }
    /// What the core does about a line, on one worker.
    void duck()
    {
        onWorker([this] {
            const auto read = guard->scriptRunner().run(getMusicVolume);
            if (read.error) return;
            (void)guard->scriptRunner().run(setMusicVolume +
                                            std::to_string(std::max(read.integer * 35 / 100, 12)));
        });
    }
    void speak() { guard->voice().speak({"Now playing", std::nullopt}); }
    void say()
    {
        speak();
        duck();
    }
    void fallSilent() { voice.end(); }
    static bool comesTo(const FakePlayer& player, double volume)
    {
        return eventually([&] { return std::abs(player.property("Volume").toDouble() - volume) < 1e-9; });
    }
    bool comesToNoNote()
    {
        return eventually([&] { return guard->finish(std::chrono::milliseconds(0)) && !notes.load(); });
    }
};

}  // namespace sonvara::test
