// Whether a player plays, as the polls that pass by tell.
#pragma once

#include "ports/ScriptRunner.h"

#include <functional>
#include <mutex>
#include <set>
#include <string>

namespace sonvara {

/// A script runner that passes every script on and reads the answers to polls. A poll that fails counts as one of a
/// player that does not play.
class PlayingWatch final : public ScriptRunner {
public:
    using Changed = std::function<void(bool isAnyPlaying)>;

    /// `changed` is called on the worker that polled, one call at a time. `scripts` must outlive this.
    PlayingWatch(ScriptRunner& scripts, Changed changed) : scripts_(scripts), changed_(std::move(changed)) {}

    [[nodiscard]] ScriptResult run(const std::string& source) override;

private:
    void note(const std::string& poll, bool isPlaying);

    ScriptRunner& scripts_;
    const Changed changed_;
    std::mutex mutex_;               ///< guards the rest
    std::set<std::string> playing_;  ///< the polls that said so last
};

}  // namespace sonvara
