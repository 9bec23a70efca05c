// A player that is stopped, closed or killed while it is low gets its volume back when it plays again.
#include "LoweredPlayersFixture.h"

#include <optional>

namespace sonvara::test {
namespace {

using LoweredPlayersReturnTest = LoweredPlayersFixture;

TEST_F(LoweredPlayersReturnTest, StoppedWhileLoweredComesBackWhenItPlays)
{
    Quirks quirks{.closesStream = true, .opensAtMemory = true};
    for (const std::optional<double> first :
         {std::optional<double>(), std::optional(0.0), std::optional(1.0)}) {
        for (const auto time : {100ms, 2000ms}) {
            quirks.tellsFirst = first;
            quirks.tellsFirstFor = time;
            have(quirks, 0.9);
            say();
            player->stop();
            fallSilent();
            pass(10s);
            EXPECT_EQ(desktop.notes.size(), 1U);
            player->play();
            polls(3);
            expectBack(0.9);
        }
    }
}

TEST_F(LoweredPlayersReturnTest, StoppedWhileLoweredComesBackAlthoughItTellsSoAlready)
{
    for (const double volume : {1.0, 0.58}) {
        have({.closesStream = true, .opensAtMemory = true, .believesItself = true}, volume);
        say();
        player->stop();
        fallSilent();
        pass(2s);
        player->play();
        polls(3);
        expectBack(volume);
    }
}

TEST_F(LoweredPlayersReturnTest, WhatAPlayerTellsWithoutAStreamCountsForNothing)
{
    have({.closesStream = true, .opensAtMemory = true, .tellsFirst = 0.5}, 0.8);
    say();
    player->stop();
    fallSilent();
    polls(3);
    EXPECT_EQ(desktop.notes.size(), 1U);
    player->play();
    polls(3);
    expectBack(0.8);
}

TEST_F(LoweredPlayersReturnTest, APlayerThatSignalsNothingIsSeenByThePolls)
{
    have({.closesStream = true, .opensAtMemory = true}, 0.9);
    player->signals = nullptr;
    say();
    player->stop();
    fallSilent();
    pass(10s);
    player->play();
    for (int poll = 0; poll < 3; ++poll) {
        desktop.loweredPlayers->polled();
        pass(3s);
    }
    expectBack(0.9);
}

TEST_F(LoweredPlayersReturnTest, ClosedWhileLoweredComesBackWhenItPlaysAgain)
{
    for (const bool cube : {false, true}) {
        for (const double first : {1.0, 0.0, 0.01}) {
            have({.opensAtMemory = true, .opensAtCube = cube, .tellsFirst = first, .tellsFirstFor = 2000ms},
                 0.8);
            say();
            startAnew();
            fallSilent();
            pass(4s);
            player->play();
            polls(3);
            expectBack(0.8);
        }
    }
}

TEST_F(LoweredPlayersReturnTest, KilledTogetherWithUsComesBackWhenItPlaysAgain)
{
    for (const double first : {1.0, 0.0, 0.01}) {
        have({.opensAtMemory = true, .tellsFirst = first, .tellsFirstFor = 2000ms}, 0.8);
        say();
        die();
        startAnew();
        player->play();
        polls(3);
        expectBack(0.8);
    }
}

// Its volume is not what its user wants before its note is settled.
TEST_F(LoweredPlayersReturnTest, ALineOverAPlayerThatIsOwedItsVolumeKeepsIt)
{
    have({.opensAtMemory = true, .tellsFirst = 0.0, .tellsFirstFor = 2000ms}, 0.8);
    say();
    die();
    startAnew();
    player->play();
    pass(20ms);
    EXPECT_EQ(read()->percent(), 80);
    say();
    pass(3s);
    EXPECT_DOUBLE_EQ(player->sound(), 0.28);
    fallSilent();
    polls(2);
    expectBack(0.8);
}

}  // namespace
}  // namespace sonvara::test
