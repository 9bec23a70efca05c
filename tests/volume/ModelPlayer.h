// A player as players are, in virtual time: for the tests of `LoweredPlayers`.
#pragma once

#include "volume/LoweredPlayers.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace sonvara::test {

using namespace std::chrono_literals;
using Milliseconds = std::chrono::milliseconds;

/// Virtual time: what is to happen later happens when the test lets time pass.
class Schedule {
public:
    [[nodiscard]] VolumeTime now() const { return now_; }
    void after(Milliseconds delay, std::function<void()> happening)
    {
        due_.emplace(now_ + delay, std::move(happening));
    }
    void pass(Milliseconds time)
    {
        const auto until = now_ + time;
        while (!due_.empty() && due_.begin()->first <= until) {
            auto next = due_.extract(due_.begin());
            now_ = std::max(now_, next.key());
            next.mapped()();
        }
        now_ = until;
    }

private:
    VolumeTime now_{100h};
    std::multimap<VolumeTime, std::function<void()>> due_;
};

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
    std::optional<Milliseconds> takesBack = {};  ///< so soon after a track's begin: Strawberry
    Milliseconds lag{0};                         ///< before a command is obeyed
    Milliseconds resumesAt{0};                   ///< in its track, and stays there for `tellsFirstFor`: Elisa
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
        isRestoring_ = false;
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
            signal();
        });
    }

private:
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
        }
        signal();
    }
    [[nodiscard]] double told() const
    {
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
    int commands_ = 0;
    bool hasStream_ = false;
    int stream_ = 0;
    int streamsOfRun_ = 0;
    VolumeTime opened_{};
    VolumeTime trackBegan_{};
};

/// `LoweredPlayers` on a desktop of model players, of which one is meant by "Music".
class ModelDesktop final : public VolumePlayers {
public:
    struct Run {
        ModelPlayer* player;
        int start;  ///< which start of it
    };

    Schedule schedule;
    Milliseconds latency{1};    ///< each way
    Milliseconds readsTake{0};  ///< longer than looks
    PlayerRun music = 0;
    int today = 20'000;
    std::vector<double> commands;  ///< sent
    int underWay = 0;              ///< commands that have not arrived
    LoweredNotes notes;
    std::unique_ptr<LoweredPlayers> loweredPlayers;

    /// Our process begins, or begins anew.
    void start()
    {
        startWithoutNotes();
        loweredPlayers->remember(notes);
    }
    /// The same, but the disk does not tell what is kept.
    void startWithoutNotes()
    {
        ++process_;
        loweredPlayers = std::make_unique<LoweredPlayers>(
            *this, LoweredPlayers::Surroundings{[this] { return schedule.now(); }, [this] { return today; },
                                                [this](const LoweredNotes& all) { notes = all; }, [] {},
                                                [this](VolumeTime due) { wakeAt(due); }});
        for (const auto& [run, player] : runs_) appear(run);
    }
    /// The player begins a run and is the one that is meant.
    PlayerRun add(ModelPlayer& player, const std::string& name)
    {
        const auto run = ++lastRun_;
        runs_[run] = &player;
        names_[run] = name;
        player.isRunning = true;
        player.signals = [this, run] { hear(run); };
        music = run;
        if (loweredPlayers) appear(run);
        return run;
    }
    void remove(PlayerRun run)
    {
        runs_.at(run)->quit();
        runs_.at(run)->signals = nullptr;
        runs_.erase(run);
        if (music == run) music = 0;
        loweredPlayers->gone(run);
    }
    void poll()
    {
        for (const auto& [run, player] : runs_) hear(run);
        loweredPlayers->polled();
    }

    PlayerRun meant(const std::string& player) override { return player == "Music" ? music : 0; }
    void read(PlayerRun run, const Answer& answer) override { read(run, answer, 4); }
    void look(PlayerRun run, const Answer& answer) override
    {
        toPlayer([this, run, answer, process = process_] {
            const auto found = runs_.find(run);
            const auto told = found == runs_.end() ? std::nullopt : std::optional(found->second->look());
            if (process == process_) later([answer, told] { answer(told); });
        });
    }
    void tell(PlayerRun run, double volume) override
    {
        commands.push_back(volume);
        ++underWay;
        toPlayer([this, run, volume] {
            --underWay;
            if (const auto found = runs_.find(run); found != runs_.end()) found->second->set(volume);
        });
    }
    /// To us, if we still are the process to which it is said.
    void later(const std::function<void()>& happening)
    {
        schedule.after(latency, [this, happening, process = process_] {
            if (process == process_) happening();
        });
    }

private:
    /// Again for a while what may mislead, as the platform does.
    void read(PlayerRun run, const Answer& answer, int repeats)
    {
        look(run, [this, run, answer, repeats](const std::optional<VolumeLook>& told) {
            const bool isEarly = told && loweredPlayers->mayMislead(run, *told) && repeats > 0;
            schedule.after(isEarly ? 100ms : readsTake,
                           [this, run, answer, repeats, told, isEarly, process = process_] {
                               if (process != process_) return;
                               if (isEarly)
                                   read(run, answer, repeats - 1);
                               else
                                   answer(told);
                           });
        });
    }
    void toPlayer(const std::function<void()>& happening) { schedule.after(latency, happening); }
    void appear(PlayerRun run)
    {
        loweredPlayers->appeared(run, names_.at(run));
        hear(run);
    }
    void hear(PlayerRun run)
    {
        const auto found = runs_.find(run);
        if (found == runs_.end()) return;
        later([this, run, told = found->second->look()] {
            loweredPlayers->heard(run, told.isPlaying, told.track);
        });
    }
    void wakeAt(VolumeTime due)
    {
        const auto delay = std::chrono::ceil<Milliseconds>(due - schedule.now());
        schedule.after(delay, [this, process = process_] {
            if (process == process_) loweredPlayers->wake();
        });
    }

    std::map<PlayerRun, ModelPlayer*> runs_;
    std::map<PlayerRun, std::string> names_;
    PlayerRun lastRun_ = 0;
    int process_ = 0;
};

}  // namespace sonvara::test
