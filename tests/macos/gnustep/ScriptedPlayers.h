// Two players that answer the program's scripts.
#pragma once

#include "StandIns.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace sonvara::test {

struct Player {
    bool isRunning = false;
    bool isPlaying = false;
    std::string title;
    std::string artist;
    std::string album;
    int volume = 80;
};

/// Any thread. Answers from the time it is made until it is destroyed.
class ScriptedPlayers {
public:
    ScriptedPlayers();
    ~ScriptedPlayers();
    ScriptedPlayers(const ScriptedPlayers&) = delete;
    ScriptedPlayers& operator=(const ScriptedPlayers&) = delete;

    void set(const std::string& name, Player player);
    /// From now on, every script that asks about volumes fails with `errorNumber`, and polls answer
    /// what their scripts then return.
    void deny(int errorNumber);

    /// Music's dictionary is the one since macOS 14.
    void haveNewMusic();

    /// Scripts about the volume wait from now on until `release`.
    void hold();
    void release();

    [[nodiscard]] int volume(const std::string& name);
    [[nodiscard]] int polls();
    /// The volumes that were set, oldest first.
    [[nodiscard]] std::vector<int> volumesSet();

private:
    standins::ScriptAnswer answer(const std::string& source);
    standins::ScriptAnswer poll(const std::string& name, const std::string& source);
    standins::ScriptAnswer volumeScript(const std::string& name, const std::string& source);

    std::mutex mutex_;
    std::mutex volumeGate_;  // held while volume scripts have to wait
    std::map<std::string, Player> players_;
    std::optional<int> denial_;
    std::vector<int> volumesSet_;
    int polls_ = 0;
    bool isMusicNew_ = false;
};

}  // namespace sonvara::test
