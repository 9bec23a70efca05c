// A player as players are, in virtual time.
#pragma once

#include "Schedule.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace sonvara::test {

/// What players were seen to do.
struct Quirks {
    bool truncates = false;      ///< tells and plays int(v * 100): MPD, cmus, Clementine, SMPlayer
    bool closesStream = false;   ///< when it stops, and is set in vain until it plays: MPD, cmus, Pragha
    bool opensAtMemory = false;  ///< as the sound server remembers the last stream: Elisa, cmus, Pragha
    bool opensAtCube = false;    ///< of that: Rhythmbox
    bool believesItself =
        false;  ///< tells what it was told and ignores it the next time, however it sounds: Elisa
    std::optional<double> tellsFirst =
        {};  ///< before and shortly after its stream is open; 1: only the first one
    Milliseconds tellsFirstFor{0};
    Milliseconds swallows{0};  ///< what is set so soon after its stream was opened: Parole, Pragha
    std::optional<Milliseconds> takesBack = {};    ///< so soon after a track's begin: Strawberry
    std::optional<Milliseconds> fallsSilent = {};  ///< so it tells, so soon after a track's begin: Strawberry
    Milliseconds lag{0};                           ///< before a command is obeyed
    Milliseconds resumesAt{0};  ///< in its track, and stays there for `tellsFirstFor`: Elisa
};

/// One program that plays. Survives its runs, as its user's settings do.
class ModelPlayer {
public:
    ModelPlayer(Schedule& schedule, Quirks quirks) : schedule_(schedule), quirks_(quirks) {}

    std::function<void()> signals;  ///< something has changed that players signal
    double user = 1.0;              ///< what its user chose last
    bool isRunning = true;
    bool isPlaying = false;
    int track = 0;

    [[nodiscard]] double sound() const { return sound_; }
    [[nodiscard]] bool hasStream() const { return hasStream_; }
    [[nodiscard]] bool tellsTruth() const { return told() == sound_; }
    [[nodiscard]] bool tellsSilence() const { return tellsSilence_; }
    [[nodiscard]] bool resumes() const { return quirks_.resumesAt > 0ms; }
    /// A command has arrived, and has not been obeyed.
    [[nodiscard]] bool isObeying() const { return commands_ > 0; }
    [[nodiscard]] VolumeLook look() const { return {isPlaying, told(), std::to_string(track), position()}; }

    void play()
    {
        if (!isRunning || isPlaying) return;
        isPlaying = true;
        if (!hasStream_) open();
        signal();
    }
    void pause() { halt(false); }
    void stop() { halt(quirks_.closesStream); }
    void next()
    {
        ++track;
        trackBegan_ = schedule_.now();
        wasSetInTrack_ = false;
        if (quirks_.fallsSilent && hasStream_) {
            schedule_.after(*quirks_.fallsSilent, [this, stream = stream_, began = track] {
                if (stream == stream_ && track == began) fallSilent();
            });
        }
        if (quirks_.takesBack && hasStream_) {
            schedule_.after(*quirks_.takesBack, [this, before = sound_, stream = stream_] {
                if (stream == stream_ && hasStream_ && sound_ != before) sound_ = memory_ = before, signal();
            });
        }
        signal();
    }
    void quit()
    {
        halt(true);
        isRunning = false;
        streamsOfRun_ = 0;
    }

    void userSets(double volume)
    {
        user = sound_ = memory_ = belief_ = volume;
        isRestoring_ = tellsSilence_ = false;
        signal();
    }
    /// What a command does when it arrives.
    void set(double volume)
    {
        if (!isRunning) return;
        if (quirks_.truncates) volume = static_cast<int>(volume * 100) / 100.0;
        ++commands_;
        schedule_.after(quirks_.lag, [this, volume] {
            --commands_;
            if (quirks_.believesItself && std::exchange(belief_, volume) == volume) return;
            if (!isRunning || (!hasStream_ && quirks_.closesStream)) return;
            if (hasStream_ && schedule_.now() < opened_ + quirks_.swallows) return;
            sound_ = memory_ = volume;
            wasSetInTrack_ = true;
            tellsSilence_ = false;
            signal();
        });
    }

private:
    /// So it tells: until it is set again, if this track has been set before; else for a while.
    void fallSilent()
    {
        tellsSilence_ = true;
        signal();
        if (wasSetInTrack_) return;
        schedule_.after(150ms, [this] {
            if (std::exchange(tellsSilence_, false)) signal();
        });
    }
    void open()
    {
        hasStream_ = true;
        ++stream_;
        ++streamsOfRun_;
        opened_ = schedule_.now();
        if (quirks_.opensAtMemory)
            sound_ = quirks_.opensAtCube && sound_ < user ? std::pow(memory_, 3) : memory_;
        if (quirks_.believesItself) {
            isRestoring_ = true;
            schedule_.after(50ms, [this, stream = stream_, memory = memory_] {
                if (stream == stream_ && isRestoring_) sound_ = memory_ = memory;
            });
        }
        if (!quirks_.tellsFirst) return;
        schedule_.after(quirks_.tellsFirstFor, [this, stream = stream_] {
            if (stream == stream_) signal();
        });
    }
    void halt(bool closes)
    {
        if (!isPlaying && !closes) return;
        isPlaying = false;
        if (closes) {
            hasStream_ = false;
            ++stream_;
            tellsSilence_ = false;
        }
        signal();
    }
    [[nodiscard]] double told() const
    {
        if (tellsSilence_) return 0;
        if (quirks_.believesItself) return belief_;
        if (!quirks_.tellsFirst || (quirks_.tellsFirst == 1.0 && streamsOfRun_ > 1)) return sound_;
        const bool isOpening = !hasStream_ || schedule_.now() < opened_ + quirks_.tellsFirstFor;
        return isOpening ? *quirks_.tellsFirst : sound_;
    }
    [[nodiscard]] Milliseconds position() const
    {
        if (!hasStream_) return 0ms;
        const auto played =
            std::chrono::floor<Milliseconds>(schedule_.now() - std::max(opened_, trackBegan_));
        if (quirks_.resumesAt == 0ms || trackBegan_ > opened_) return played;
        return quirks_.resumesAt + std::max(played - quirks_.tellsFirstFor, 0ms);
    }
    void signal()
    {
        if (signals && isRunning) signals();
    }

    Schedule& schedule_;
    Quirks quirks_;
    double sound_ = 1.0;
    double memory_ = 1.0;
    double belief_ = 1.0;
    bool isRestoring_ = false;
    bool tellsSilence_ = false;
    bool wasSetInTrack_ = false;
    int commands_ = 0;
    bool hasStream_ = false;
    int stream_ = 0;
    int streamsOfRun_ = 0;
    VolumeTime opened_{};
    VolumeTime trackBegan_{};
};

}  // namespace sonvara::test
