// `LoweredPlayers` among players whose answers the test gives, each when it likes.
#pragma once

#include "volume/LoweredPlayers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {

using namespace std::chrono_literals;

struct Told {
    PlayerRun run;
    double volume;
    bool operator==(const Told&) const = default;
};

/// Answers when the test says so.
struct SilentPlayers final : VolumePlayers {
    PlayerRun music = 1;
    std::vector<Told> told;
    std::deque<std::pair<PlayerRun, Answer>> questions;

    [[nodiscard]] PlayerRun meant(const std::string& player) override
    {
        return player == "Music" ? music : 0;
    }
    void read(PlayerRun run, const Answer& answer) override { questions.emplace_back(run, answer); }
    void look(PlayerRun run, const Answer& answer) override { questions.emplace_back(run, answer); }
    void tell(PlayerRun run, double volume) override { told.push_back({run, volume}); }
    /// The oldest question.
    void answer(const std::optional<VolumeLook>& look)
    {
        ASSERT_FALSE(questions.empty());
        const auto asked = questions.front().second;
        questions.pop_front();
        asked(look);
    }
};

class LoweredPlayersBookFixture : public testing::Test {
protected:
    SilentPlayers players;
    VolumeTime now{100h};
    LoweredNotes notes;
    std::optional<VolumeTime> wakesAt;
    LoweredPlayers book{players,
                        {.now = [this] { return now; },
                         .today = [] { return 7; },
                         .keep = [this](const LoweredNotes& all) { notes = all; },
                         .recall = [] {},
                         .wakeAt = [this](VolumeTime due) { wakesAt = due; }}};
    std::optional<LoweredPlayers::Reading> reading;
    int answers = 0;

    void begin(const LoweredNotes& kept = {}) { book.remember(kept); }
    /// It has played for long.
    void have(PlayerRun run, const std::string& name)
    {
        book.appeared(run, name);
        book.heard(run, true, "1");
        now += 10s;
    }
    void ask()
    {
        book.read("Music", [this](const auto& told) {
            reading = told;
            ++answers;
        });
    }
    static VolumeLook at(double volume, bool isPlaying = true) { return {isPlaying, volume, "1", 10s}; }
    void lower(PlayerRun run)
    {
        book.lineBegan();
        book.duck("Music", {run, 0.8, true}, 28);
    }
    std::vector<std::string> names()
    {
        std::vector<std::string> found;
        for (const auto& note : notes) found.push_back(note.player);
        return found;
    }
};

}  // namespace sonvara::test
