// Lines over a player: each lowers it and no longer than it is spoken, whatever comes too late, and only the one that is meant.
#include "LoweredPlayersFixture.h"

#include <optional>

namespace sonvara::test {
namespace {

using LoweredPlayersTest = LoweredPlayersFixture;

TEST_F(LoweredPlayersTest, IsLowWhileTheLineIsSpokenAndBackAtItsEnd)
{
    have();
    say();
    EXPECT_DOUBLE_EQ(player->sound(), 0.35);
    EXPECT_EQ(desktop.notes.size(), 1U);
    fallSilent();
    pass(2ms);
    EXPECT_DOUBLE_EQ(player->sound(), 1.0);
    pass(200ms);
    expectBack();
    EXPECT_EQ(desktop.commands, (Commands{0.35, 1.0}));
}

// A pause 100 ms into a line.
TEST_F(LoweredPlayersTest, ALineThatEndsWhileItsDuckIsUnderWayLeavesNothingLow)
{
    for (const auto end : {0ms, 1ms, 2ms, 3ms, 4ms, 6ms}) {
        have();
        desktop.loweredPlayers->lineBegan();
        std::optional<LoweredPlayers::Reading> reading;
        desktop.loweredPlayers->read("Music", [&](const auto& told) { reading = told; });
        desktop.schedule.after(end, [&] { desktop.loweredPlayers->lineEnded(); });
        desktop.schedule.after(3ms, [&] { desktop.loweredPlayers->duck("Music", *reading, 35); });
        pass(20ms);
        EXPECT_DOUBLE_EQ(player->sound(), 1.0) << end.count();
        pass(200ms);
        expectBack();
    }
}

// The core believes that it has lowered the player, and will not duck again.
TEST_F(LoweredPlayersTest, ADuckThatCameTooLateLowersDuringTheNextLine)
{
    have();
    duck();
    pass(10s);
    EXPECT_TRUE(desktop.commands.empty());
    desktop.loweredPlayers->lineBegan();
    pass(10ms);
    EXPECT_DOUBLE_EQ(player->sound(), 0.35);
    fallSilent();
    pass(300ms);
    expectBack();
}

// A skip with the AI off: the core puts the volume back while the next line has begun.
TEST_F(LoweredPlayersTest, TheCoresWayBackIsSentAtOnceAlsoDuringALine)
{
    have();
    say();
    desktop.loweredPlayers->lineBegan();
    desktop.loweredPlayers->lineEnded();
    desktop.loweredPlayers->restore("Music");
    pass(2ms);
    EXPECT_DOUBLE_EQ(player->sound(), 1.0);
}

// A skip with the AI on: the next line ducks afresh, at once or while the volume goes back.
TEST_F(LoweredPlayersTest, ALineCloseOnAnotherOneIsDuckedToTheSameVolume)
{
    for (const auto pause : {0ms, 1ms, 2ms, 50ms, 200ms}) {
        have({}, 0.8);
        say();
        fallSilent();
        pass(pause);
        say();
        EXPECT_DOUBLE_EQ(player->sound(), 0.28) << pause.count();
        fallSilent();
        pass(300ms);
        expectBack(0.8);
    }
}

TEST_F(LoweredPlayersTest, TwoDucksBeforeEitherIsRecordedDoNotAddUp)
{
    have();
    desktop.loweredPlayers->lineBegan();
    duck();
    const auto second = read();
    EXPECT_EQ(second->percent(), 100);
    desktop.loweredPlayers->duck("Music", *second, 35);
    pass(200ms);
    fallSilent();
    pass(200ms);
    expectBack();
}

// A read that comes late may tell of the time when the player was lowered.
TEST_F(LoweredPlayersTest, AReadFromBeforeThePlayerWasPutBackIsRepeated)
{
    have({}, 0.8);
    say();
    desktop.readsTake = 300ms;
    std::optional<LoweredPlayers::Reading> reading;
    desktop.loweredPlayers->read("Music", [&reading](const auto& told) { reading = told; });
    pass(2ms);
    fallSilent();
    pass(200ms);
    EXPECT_TRUE(desktop.notes.empty());
    EXPECT_FALSE(reading);
    pass(500ms);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->percent(), 80);
}

// The name's new owner is another program: it is at 30 by its user's choice.
TEST_F(LoweredPlayersTest, AProgramThatTakesTheNameOverIsToldNothing)
{
    have();
    say();
    ModelPlayer other(desktop.schedule, {});
    desktop.remove(run);
    other.play();
    other.userSets(0.3);
    desktop.commands.clear();
    desktop.add(other, "org.mpris.MediaPlayer2.other");
    fallSilent();
    polls(3);
    EXPECT_TRUE(desktop.commands.empty());
    EXPECT_EQ(desktop.notes.size(), 1U) << "the first one may come back";
}

TEST_F(LoweredPlayersTest, TheDuckGoesToTheProgramThatWasReadOrNowhere)
{
    have();
    ModelPlayer other(desktop.schedule, {});
    other.play();
    other.userSets(0.5);
    desktop.loweredPlayers->lineBegan();
    const auto reading = read();
    const auto theirs = desktop.add(other, "org.mpris.MediaPlayer2.other");
    desktop.loweredPlayers->duck("Music", *reading, 35);
    pass(10ms);
    EXPECT_DOUBLE_EQ(player->sound(), 0.35);
    EXPECT_DOUBLE_EQ(other.sound(), 0.5);
    desktop.remove(run);
    desktop.loweredPlayers->duck("Music", *reading, 35);
    pass(10ms);
    EXPECT_DOUBLE_EQ(other.sound(), 0.5);
    desktop.remove(theirs);
}

TEST_F(LoweredPlayersTest, ThePlayerThatIsMeantNowIsLoweredAndTheOtherOneComesBack)
{
    have();
    say();
    ModelPlayer other(desktop.schedule, {});
    desktop.add(other, "org.mpris.MediaPlayer2.other");
    other.play();
    pass(400ms);
    desktop.loweredPlayers->lineBegan();
    duck();
    pass(300ms);
    EXPECT_DOUBLE_EQ(player->sound(), 1.0);
    EXPECT_DOUBLE_EQ(other.sound(), 0.35);
    desktop.loweredPlayers->lineEnded();
    fallSilent();
    polls(3);
    EXPECT_DOUBLE_EQ(other.sound(), 1.0);
    EXPECT_TRUE(desktop.notes.empty());
    desktop.remove(desktop.music);
}

TEST_F(LoweredPlayersTest, AtTheEndEveryPlayerComesBackAndNoneIsLoweredAnyMore)
{
    have();
    say();
    const auto reading = read();
    desktop.loweredPlayers->end();
    EXPECT_FALSE(desktop.loweredPlayers->isSettled());
    pass(5ms);
    EXPECT_TRUE(desktop.loweredPlayers->isSettled());
    expectBack();
    desktop.loweredPlayers->duck("Music", *reading, 35);
    EXPECT_FALSE(read());
    pass(5ms);
    expectBack();
}

}  // namespace
}  // namespace sonvara::test
