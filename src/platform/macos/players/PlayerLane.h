// The scripts for one player, in the order in which they are run.
#pragma once

#include "ports/ScriptRunner.h"

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace sonvara {

/// One script is under way at a time, however long that takes. Commands follow one another in the order in which they
/// are given, and go before polls. Of polls one waits at most: who asks meanwhile shares its answer, which is newer
/// than the asking. Any thread; nothing here waits.
class PlayerLane {
public:
    /// Called once, on the thread that ran the script.
    using Done = std::function<void(const ScriptResult&)>;
    /// Begins to run a script somewhere else, and calls back when it has ended. Never in place.
    using Run = std::function<void(const std::string& source, Done done)>;

    explicit PlayerLane(Run run) : run_(std::move(run)) {}

    void command(std::string source, Done done);
    void poll(std::string source, Done done);

private:
    struct Script {
        std::string source;
        std::vector<Done> done;
    };

    void startNext();
    void ended(const Script& script, const ScriptResult& result);

    Run run_;
    std::mutex mutex_;  ///< guards the rest; never held while something is called
    std::deque<Script> commands_;
    std::deque<Script> polls_;  ///< one at most for each text
    bool isBusy_ = false;
};

}  // namespace sonvara
