// One player and what it is told, in virtual time.
#pragma once

#include "volume/LoweredPlayer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace sonvara::test {

using namespace std::chrono_literals;
using Milliseconds = std::chrono::milliseconds;
using Commands = std::vector<double>;
inline const Commands nothing{};

class LoweredPlayerFixture : public testing::Test {
protected:
    LoweredPlayer player;
    VolumeLevels levels{0.8, 0.3};
    VolumeTime now{100h};
    bool isPlaying = false;
    std::string track = "1";
    Milliseconds position{0};

    void pass(Milliseconds time) { now += time; }
    void play(bool plays = true)
    {
        isPlaying = plays;
        player.hear(plays, {}, now);
    }
    void next(const std::string& title)
    {
        track = title;
        player.hear({}, title, now);
    }
    [[nodiscard]] VolumeLook look(double volume) const { return {isPlaying, volume, track, position}; }
    Commands commands()
    {
        Commands told;
        while (const auto volume = player.takeCommand()) told.push_back(*volume);
        return told;
    }
    /// What it is told when it is seen at this volume.
    Commands answerTo(double volume)
    {
        player.see(look(volume), now);
        return commands();
    }
    Commands answerAfter(Milliseconds time, double volume)
    {
        pass(time);
        return answerTo(volume);
    }

    // How most tests begin:
    void haveForLong()
    {
        play();
        next(track);
        pass(10s);
    }
    void haveLow()
    {
        haveForLong();
        player.lower(levels, now);
        EXPECT_EQ(commands(), Commands{levels.low});
    }
    void haveObeyed()
    {
        haveLow();
        EXPECT_EQ(answerAfter(200ms, levels.low), nothing);
        EXPECT_TRUE(player.isLowered());
    }
    void wantHome()
    {
        player.want(false, now);
        EXPECT_EQ(commands(), Commands{levels.home});
    }
    void haveOwed()
    {
        haveObeyed();
        wantHome();
    }
    /// By itself, at a track's begin, and has obeyed in between.
    void haveTakenItsVolumeBackTwice()
    {
        haveObeyed();
        next("2");
        EXPECT_EQ(answerAfter(10ms, levels.home), Commands{levels.low});
        EXPECT_EQ(answerAfter(50ms, levels.low), nothing);
        EXPECT_EQ(answerAfter(100ms, levels.home), nothing) << "it has its way";
    }
    /// It is told `volume` each time, three times, whatever comes of it.
    void expectThreeTries(double seen, double told)
    {
        for (int i = 0; i < 3; ++i) EXPECT_EQ(answerAfter(100ms, seen), Commands{told}) << i;
    }
};

}  // namespace sonvara::test
