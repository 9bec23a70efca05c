// Everything that guards the players' volumes, put together for a platform.
#pragma once

#include "platform/posix/NoteWriter.h"
#include "platform/posix/VolumeScripts.h"
#include "volume/CountedVoice.h"
#include "volume/LoweredPlayers.h"

#include <chrono>
#include <memory>

namespace sonvara {

class Clock;
class DelayedTask;
class GlobalQueue;
class NoteStore;

/// Made and ended on the main thread. It must outlive the event loop and the workers.
class VolumeGuard {
public:
    struct Below {
        VolumePlayers& players;
        ScriptRunner& otherScripts;
        SpeechSynthesizer& voice;
        MainQueue& mainQueue;
        GlobalQueue& workers;
        const Clock& clock;
        NoteStore& notes;
        std::chrono::milliseconds readLimit;  ///< of a worker that reads a volume
    };

    /// Does nothing of itself: the notes of the process before are read with the core's first script, by a
    /// worker.
    explicit VolumeGuard(const Below& below);

    /// For the core, in place of those below.
    [[nodiscard]] ScriptRunner& scriptRunner() { return scripts_; }
    [[nodiscard]] SpeechSynthesizer& voice() { return voice_; }
    /// To be told what the players do.
    [[nodiscard]] LoweredPlayers& players() { return *players_; }

    /// See `LoweredPlayers::end`. From now on reads end as failed and nothing is spoken, so that the voice may go.
    void end();
    /// Waits for the disk for `limit` at most. False: it hangs, and so would the end of this object.
    [[nodiscard]] bool finish(std::chrono::milliseconds limit) { return writer_.finish(limit); }

private:
    [[nodiscard]] int today() const;
    void recall();
    void wakeAt(VolumeTime due);

    Below below_;
    NoteWriter writer_;
    std::shared_ptr<DelayedTask> wakeUp_;
    VolumeTime wakesAt_{};
    std::shared_ptr<LoweredPlayers> players_;
    VolumeScripts scripts_;
    CountedVoice voice_;
};

}  // namespace sonvara
