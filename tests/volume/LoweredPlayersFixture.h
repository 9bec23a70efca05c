// `LoweredPlayers` beside a player that has been playing for long, with any habits, and what the core does about a line.
#pragma once

#include "ModelDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sonvara::test {

class LoweredPlayersFixture : public testing::Test {
protected:
    ModelDesktop desktop;
    std::vector<std::unique_ptr<ModelPlayer>> players;  // the schedule may hold on to each
    ModelPlayer* player = nullptr;
    PlayerRun run = 0;

    /// A player that has been playing for long.
    void have(Quirks quirks = {}, double volume = 1.0)
    {
        if (run != 0) desktop.remove(run);
        players.push_back(std::make_unique<ModelPlayer>(desktop.schedule, quirks));
        player = players.back().get();
        desktop.notes.clear();
        desktop.start();
        run = desktop.add(*player, "org.mpris.MediaPlayer2.test");
        player->play();
        pass(5s);
        player->userSets(volume);
        pass(5s);
        desktop.commands.clear();
    }
    void pass(Milliseconds time) { desktop.schedule.pass(time); }
    void polls(int count)
    {
        for (int i = 0; i < count; ++i) {
            desktop.poll();
            pass(3s);
        }
    }
    std::optional<LoweredPlayers::Reading> read(Milliseconds within = 5ms)
    {
        std::optional<LoweredPlayers::Reading> reading;
        desktop.loweredPlayers->read("Music", [&reading](const auto& told) { reading = told; });
        pass(within);
        return reading;
    }
    /// Both were killed while it was low; it goes on in the middle of its track.
    void haveOneThatResumes(Milliseconds opensAfter = 90ms)
    {
        have({.opensAtMemory = true, .tellsFirst = 1.0, .tellsFirstFor = opensAfter, .resumesAt = 4s}, 0.58);
        say();
        desktop.remove(run);
        run = desktop.add(*player, "org.mpris.MediaPlayer2.test");
        player->play();
        die();
    }
    void duck() { ASSERT_TRUE(duckWhenRead(5ms)); }
    /// Says whether it could be read.
    bool duckWhenRead(Milliseconds within = 500ms)
    {
        const auto reading = read(within);
        if (reading)
            desktop.loweredPlayers->duck("Music", *reading, std::max(reading->percent() * 35 / 100, 12));
        return reading.has_value();
    }
    void say()
    {
        desktop.loweredPlayers->lineBegan();
        duck();
        pass(300ms);
    }
    /// The line's end, and what the core does about it.
    void fallSilent()
    {
        desktop.loweredPlayers->lineEnded();
        desktop.loweredPlayers->restore("Music");
    }
    void die() { desktop.start(); }
    void startAnew(const std::string& name = "org.mpris.MediaPlayer2.test")
    {
        desktop.remove(run);
        run = desktop.add(*player, name);
        pass(10ms);
    }
    void expectBack(double volume = 1.0)
    {
        EXPECT_DOUBLE_EQ(player->sound(), volume);
        EXPECT_TRUE(desktop.notes.empty());
    }
    using Commands = std::vector<double>;
};

}  // namespace sonvara::test
