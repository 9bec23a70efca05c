// What a player tells while its stream opens, and when it is read.
#include "LoweredPlayersFixture.h"

#include <optional>

namespace sonvara::test {
namespace {

using LoweredPlayersOpeningTest = LoweredPlayersFixture;

// Strawberry, before its first stream is open.
TEST_F(LoweredPlayersOpeningTest, AFirstFullVolumeIsNoVolume)
{
    have({.opensAtMemory = true, .tellsFirst = 1.0, .tellsFirstFor = 200ms}, 0.58);
    startAnew();
    player->play();
    pass(20ms);
    desktop.loweredPlayers->lineBegan();
    std::optional<LoweredPlayers::Reading> reading;
    desktop.loweredPlayers->read("Music", [&reading](const auto& told) { reading = told; });
    pass(350ms);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->percent(), 58);
    desktop.loweredPlayers->duck("Music", *reading, 20);
    pass(3s);
    EXPECT_DOUBLE_EQ(player->sound(), 0.2);
    fallSilent();
    polls(2);
    expectBack(0.58);
}

TEST_F(LoweredPlayersOpeningTest, AFullVolumeIsReadAtOnceOnceThePlayerHasPlayed)
{
    have();
    EXPECT_EQ(read()->percent(), 100);
    player->stop();
    pass(1s);
    player->play();
    pass(5ms);
    EXPECT_EQ(read()->percent(), 100) << "without a wait";
    desktop.start();
    pass(5ms);
    EXPECT_EQ(read()->percent(), 100) << "far into its track";
}

TEST_F(LoweredPlayersOpeningTest, AFirstVolumeOfNothingIsNoVolume)
{
    have({.opensAtMemory = true, .tellsFirst = 0.0, .tellsFirstFor = 2000ms});
    startAnew();
    player->play();
    pass(20ms);
    EXPECT_FALSE(read());
    pass(2s);
    EXPECT_EQ(read()->percent(), 100);
}

TEST_F(LoweredPlayersOpeningTest, APlayerThatItsUserHasSilencedIsReadAsSilent)
{
    have({}, 0.0);
    EXPECT_EQ(read()->percent(), 0);
    say();
    EXPECT_DOUBLE_EQ(player->sound(), 0.12);
    fallSilent();
    pass(300ms);
    expectBack(0.0);
}

// Elisa goes on where it was, and says so, and that it is at full volume, before its stream is open.
TEST_F(LoweredPlayersOpeningTest, APlayerThatGoesOnInTheMiddleOfATrackMayBeNew)
{
    haveOneThatResumes();
    pass(5s);
    polls(2);
    expectBack(0.58);
}

TEST_F(LoweredPlayersOpeningTest, ALineOverOneThatMayBeNewWaitsUntilItIsKnown)
{
    haveOneThatResumes();
    desktop.loweredPlayers->lineBegan();
    duckWhenRead();
    pass(500ms);
    EXPECT_DOUBLE_EQ(player->sound(), 0.2);
    fallSilent();
    polls(3);
    expectBack(0.58);
}

TEST_F(LoweredPlayersOpeningTest, WhatNobodyKnowsIsNotRead)
{
    haveOneThatResumes(2s);
    EXPECT_FALSE(duckWhenRead());
    pass(4s);
    polls(2);
    expectBack(0.58);
}

}  // namespace
}  // namespace sonvara::test
