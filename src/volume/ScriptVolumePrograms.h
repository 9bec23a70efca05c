// Programs whose volume is read and set by scripts of our own.
#pragma once

#include "volume/VolumePrograms.h"

namespace sonvara {

class ScriptRunner;

/// For platforms on which a player's name always means the same program.
class ScriptVolumePrograms : public VolumePrograms {
public:
    explicit ScriptVolumePrograms(ScriptRunner& scripts) : scripts_(scripts) {}

    [[nodiscard]] std::optional<std::string> programOf(const std::string& player) override { return player; }
    [[nodiscard]] std::optional<int> volume(const std::string& program) override;
    bool setVolume(const std::string& program, int volume) override;

private:
    ScriptRunner& scripts_;
};

}  // namespace sonvara
