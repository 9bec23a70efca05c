// The volumes of the players that are addressed by scripts.
#pragma once

#include "ports/ScriptRunner.h"
#include "volume/VolumePlayers.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace sonvara {

class GlobalQueue;
class LoweredPlayers;
class MainQueue;

/// Here a player's name always means the same program, and its runs are not told apart: whether it runs is
/// part of each look. The scripts run on one worker, one after the other, in the order in which they are
/// asked for; one that waits for a slow player, or for the user's consent, holds up the later ones and nobody
/// else.
class ScriptVolumes final : public VolumePlayers {
public:
    /// All must outlive this and the workers.
    ScriptVolumes(ScriptRunner& scripts, GlobalQueue& workers, MainQueue& mainQueue)
        : scripts_(scripts),
          workers_(workers),
          mainQueue_(mainQueue)
    {}

    /// From now on `keeper` is told of the players. It must outlive the main queue's tasks.
    void reportTo(LoweredPlayers& keeper);

    [[nodiscard]] PlayerRun meant(const std::string& player) override;
    /// Sends the core's command as it is, whether the player runs or not.
    void read(PlayerRun run, const Answer& answer) override;
    void look(PlayerRun run, const Answer& answer) override;
    void tell(PlayerRun run, double volume) override;

    /// Any thread: waits until every script has run. False: one of them hangs.
    [[nodiscard]] bool finish(std::chrono::milliseconds limit);

private:
    using Job = std::function<void()>;

    void add(Job job);
    void work();
    void take(PlayerRun run, const std::optional<VolumeLook>& look, const Answer& answer);

    ScriptRunner& scripts_;
    GlobalQueue& workers_;
    MainQueue& mainQueue_;
    LoweredPlayers* keeper_ = nullptr;
    std::map<PlayerRun, bool> isRunning_;  ///< as last seen; main thread
    std::mutex mutex_;                     ///< guards the rest; never held while a script runs
    std::condition_variable changed_;
    std::deque<Job> jobs_;
    bool isWorking_ = false;
};

}  // namespace sonvara
