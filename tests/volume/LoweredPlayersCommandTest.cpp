// Commands that a player cuts off, swallows, takes back, obeys late or never answers.
#include "LoweredPlayersFixture.h"

#include <cmath>

namespace sonvara::test {
namespace {

using LoweredPlayersCommandTest = LoweredPlayersFixture;

TEST_F(LoweredPlayersCommandTest, AnExactVolumeComesBackExactly)
{
    for (const double volume : {1.0 / 3, 0.58, 0.1234567, 1.2}) {
        have({}, volume);
        say();
        fallSilent();
        pass(300ms);
        expectBack(volume);
    }
}

// int(0.58 * 100) is 57.
TEST_F(LoweredPlayersCommandTest, APlayerThatCutsOffComesBackExactlyEachTime)
{
    for (int percent = 0; percent <= 100; ++percent) {
        const double volume = percent / 100.0;
        have({.truncates = true}, volume);
        for (int round = 0; round < 3; ++round) {
            say();
            fallSilent();
            pass(500ms);
            EXPECT_EQ(static_cast<int>(std::lround(player->sound() * 100)), percent);
            EXPECT_TRUE(desktop.notes.empty()) << percent;
        }
    }
}

// Stopped at the very moment of a line: it has cut off the way back, and never heard of the lowering.
TEST_F(LoweredPlayersCommandTest, ACutOffVolumeIsNotTakenForAHandDuringALine)
{
    have({.truncates = true, .closesStream = true, .opensAtMemory = true}, 0.57);
    say();
    die();
    pass(4ms);
    desktop.loweredPlayers->lineBegan();
    duck();
    player->stop();
    pass(400ms);
    EXPECT_DOUBLE_EQ(player->sound(), 0.56) << "this is what is to be told from a hand";
    player->play();
    pass(400ms);
    EXPECT_DOUBLE_EQ(player->sound(), 0.19);
    fallSilent();
    polls(3);
    expectBack(0.57);
}

// cmus was told the neighbour of full and then full, and stayed at the neighbour.
TEST_F(LoweredPlayersCommandTest, AFullVolumeThatIsMissedByAHundredthIsToldAgain)
{
    have({.truncates = true});
    say();
    fallSilent();
    pass(2ms);
    player->set(0.996);
    polls(2);
    expectBack(1.0);
}

TEST_F(LoweredPlayersCommandTest, TheFirstLineOfAPlayerThatSwallowsItsFirstCommandIsLowered)
{
    have({.swallows = 30ms}, 0.9);
    player->stop();
    startAnew();
    player->play();
    pass(5ms);
    desktop.loweredPlayers->lineBegan();
    duck();
    pass(150ms);
    EXPECT_DOUBLE_EQ(player->sound(), 0.31);
    fallSilent();
    polls(2);
    expectBack(0.9);
}

TEST_F(LoweredPlayersCommandTest, APlayerThatTakesItsVolumeBackAtATracksBeginIsToldOnceMore)
{
    for (const auto time : {30ms, 200ms, 1000ms}) {
        have({.takesBack = time});
        player->next();
        pass(2ms);
        desktop.loweredPlayers->lineBegan();
        duck();
        pass(2s);
        EXPECT_DOUBLE_EQ(player->sound(), 0.35);
        fallSilent();
        pass(300ms);
        expectBack();
        EXPECT_EQ(desktop.commands, (Commands{0.35, 0.35, 1.0}));
    }
}

TEST_F(LoweredPlayersCommandTest, APlayerThatFallsSilentAtATracksBeginIsBroughtBack)
{
    for (const auto time : {10ms, 40ms, 70ms}) {
        have({.fallsSilent = time});
        player->next();
        pass(2ms);
        desktop.loweredPlayers->lineBegan();
        duck();
        pass(4s);
        EXPECT_DOUBLE_EQ(player->sound(), 0.35);
        fallSilent();
        pass(300ms);
        expectBack();
    }
}

TEST_F(LoweredPlayersCommandTest, APlayerThatObeysLateIsNotTakenForAHand)
{
    have({.lag = 90ms});
    say();
    EXPECT_DOUBLE_EQ(player->sound(), 0.35);
    fallSilent();
    pass(500ms);
    expectBack();
}

// A slow player: its limit has passed when it obeys.
TEST_F(LoweredPlayersCommandTest, ACommandThatTakesLongIsNotUndoneInTheMiddleOfTheLine)
{
    have({.lag = 600ms}, 0.8);
    say();
    pass(700ms);
    EXPECT_DOUBLE_EQ(player->sound(), 0.28);
    pass(3s);
    EXPECT_DOUBLE_EQ(player->sound(), 0.28);
    fallSilent();
    pass(700ms);
    EXPECT_DOUBLE_EQ(player->sound(), 0.8);
    polls(2);
    expectBack(0.8);
    for (const double told : desktop.commands) EXPECT_TRUE(told == 0.28 || told == 0.8) << told;
}

TEST_F(LoweredPlayersCommandTest, AHungPlayerHoldsNothingUp)
{
    have();
    say();
    desktop.latency = 400ms;
    fallSilent();
    EXPECT_EQ(desktop.commands, (Commands{0.35, 1.0})) << "told at once, whether it listens or not";
    pass(1s);
    desktop.latency = 1ms;
    polls(2);
    expectBack();
}

}  // namespace
}  // namespace sonvara::test
