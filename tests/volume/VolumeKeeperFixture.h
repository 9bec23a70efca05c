// The keeper of the volume, with programs that come and go and users who move what we have set.
#pragma once

#include "volume/VolumeKeeper.h"

#include "support/PlayerScripts.h"
#include "volume/NoteStore.h"
#include "volume/VolumePrograms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {

struct MemoryStore : NoteStore {
    std::optional<std::string> text;
    std::optional<std::string> aside;
    std::optional<std::string> load() override { return text; }
    void save(const std::string& newText) override { text = newText; }
    void remove() override { text.reset(); }
    void setAside() override { aside.swap(text); }
};

/// A desktop whose name "Music" means one of several programs.
struct Desktop : ScriptRunner, VolumePrograms {
    std::map<std::string, int> running;  ///< volume by program
    std::string music = "player one";
    std::optional<std::string> lastRead;
    std::vector<std::string> scripts;
    std::function<void()> whileSetting;  ///< the test's part, between the note and the effect
    std::function<void()> whileReading;  ///< the same, between the player's answer and its arrival

    ScriptResult run(const std::string& source) override
    {
        scripts.push_back(source);
        const auto command = parseVolumeScript(source);
        if (!command) return ScriptResult::ofText("notrunning");
        if (!command->volume) lastRead = music;
        if (!lastRead || !running.contains(*lastRead)) return ScriptResult::ofError("not running");
        ScriptResult result;
        if (command->volume) {
            if (whileSetting) whileSetting();
            running[*lastRead] = *command->volume;
        } else {
            result.integer = running[*lastRead];
            if (whileReading) std::exchange(whileReading, nullptr)();
        }
        return result;
    }
    std::optional<std::string> programOf(const std::string&) override { return lastRead; }
    std::optional<int> volume(const std::string& program) override
    {
        const auto found = running.find(program);
        return found == running.end() ? std::nullopt : std::optional(found->second);
    }
    bool setVolume(const std::string& program, int volume) override
    {
        if (!running.contains(program)) return false;
        running[program] = volume;
        return true;
    }
};

class VolumeKeeperTest : public testing::Test {
protected:
    MemoryStore store;
    Desktop desktop;
    std::unique_ptr<VolumeKeeper> keeper;

    VolumeKeeperTest() { desktop.running["player one"] = 100; }
    void SetUp() override { start(); }
    void start() { keeper = std::make_unique<VolumeKeeper>(desktop, desktop, store); }
    ScriptResult read() { return keeper->run(volumeScript({"Music", std::nullopt})); }
    ScriptResult set(int volume) { return keeper->run(volumeScript({"Music", volume})); }
    void poll() { (void)keeper->run(musicPollScript()); }
    /// What the DJ does before it speaks.
    void duck()
    {
        const auto volume = read().integer;
        (void)set(std::max(volume * 35 / 100, 12));
    }
    [[nodiscard]] std::optional<VolumeNotes> notes() const
    {
        return store.text ? parseVolumeNotes(*store.text) : std::nullopt;
    }
    [[nodiscard]] int volume() const { return desktop.running.at("player one"); }
};

}  // namespace sonvara::test
