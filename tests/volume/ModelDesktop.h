// Model players, and `LoweredPlayers` that looks after them as on a real desktop.
#pragma once

#include "ModelPlayer.h"
#include "volume/LoweredPlayers.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sonvara::test {

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
    bool readsSilenceAgain = false;
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
            const bool isSilent = readsSilenceAgain && told && told->volume < 0.005;
            const bool isEarly =
                repeats > 0 && (isSilent || (told && loweredPlayers->mayMislead(run, *told)));
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
