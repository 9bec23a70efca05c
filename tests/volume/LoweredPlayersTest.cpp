// The volume of players that misbehave as they were seen to.
#include "ModelPlayer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace sonvara::test {
namespace {

class LoweredPlayersTest : public testing::Test {
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

TEST_F(LoweredPlayersTest, TheNoteStandsBeforeTheCommandIsSent)
{
    have();
    desktop.loweredPlayers->lineBegan();
    duck();
    EXPECT_EQ(desktop.notes, (LoweredNotes{{"org.mpris.MediaPlayer2.test", {1.0, 0.35}, desktop.today}}));
    EXPECT_DOUBLE_EQ(player->sound(), 1.0);  // it has not arrived
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

TEST_F(LoweredPlayersTest, ADuckThatCameTooLateIsForgottenWhenTheUserHasMovedTheVolume)
{
    have();
    duck();
    player->userSets(0.6);
    desktop.loweredPlayers->lineBegan();
    pass(300ms);
    fallSilent();
    pass(300ms);
    EXPECT_TRUE(desktop.commands.empty());
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

TEST_F(LoweredPlayersTest, TheUsersHandDuringALineWins)
{
    have();
    say();
    player->userSets(0.6);
    pass(10ms);
    desktop.commands.clear();
    fallSilent();
    polls(2);
    EXPECT_TRUE(desktop.commands.empty());
    expectBack(0.6);
}

// mpv by the wheel.
TEST_F(LoweredPlayersTest, TheUsersHandAfterALineWins)
{
    have();
    say();
    fallSilent();
    pass(150ms);
    desktop.commands.clear();
    for (int percent = 95; percent >= 35; percent -= 5) {
        player->userSets(percent / 100.0);
        pass(20ms);
    }
    for (int percent = 34; percent <= 100; ++percent) player->userSets(percent / 100.0);
    player->userSets(0.36);
    polls(2);
    EXPECT_TRUE(desktop.commands.empty());
    expectBack(0.36);
}

TEST_F(LoweredPlayersTest, ADragRightAfterTheLineWins)
{
    have();
    say();
    fallSilent();
    pass(2ms);
    for (double volume = 0.98; volume > 0.3; volume -= 0.02) {
        player->userSets(volume);
        pass(15ms);
    }
    player->userSets(0.36);
    polls(2);
    expectBack(0.36);
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

TEST_F(LoweredPlayersTest, StoppedWhileLoweredComesBackWhenItPlays)
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

TEST_F(LoweredPlayersTest, StoppedWhileLoweredComesBackAlthoughItTellsSoAlready)
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

TEST_F(LoweredPlayersTest, WhatAPlayerTellsWithoutAStreamCountsForNothing)
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

TEST_F(LoweredPlayersTest, ClosedWhileLoweredComesBackWhenItPlaysAgain)
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

TEST_F(LoweredPlayersTest, KilledTogetherWithUsComesBackWhenItPlaysAgain)
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

// cmus was told the neighbour of full and then full, and stayed at the neighbour.
TEST_F(LoweredPlayersTest, AFullVolumeThatIsMissedByAHundredthIsToldAgain)
{
    have({.truncates = true});
    say();
    fallSilent();
    pass(2ms);
    player->set(0.996);
    polls(2);
    expectBack(1.0);
}

// Elisa goes on where it was, and says so, and that it is at full volume, before its stream is open.
TEST_F(LoweredPlayersTest, APlayerThatGoesOnInTheMiddleOfATrackMayBeNew)
{
    haveOneThatResumes();
    pass(5s);
    polls(2);
    expectBack(0.58);
}

TEST_F(LoweredPlayersTest, ALineOverOneThatMayBeNewWaitsUntilItIsKnown)
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

TEST_F(LoweredPlayersTest, WhatNobodyKnowsIsNotRead)
{
    haveOneThatResumes(2s);
    EXPECT_FALSE(duckWhenRead());
    pass(4s);
    polls(2);
    expectBack(0.58);
}

// Its volume is not what its user wants before its note is settled.
TEST_F(LoweredPlayersTest, ALineOverAPlayerThatIsOwedItsVolumeKeepsIt)
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

// Strawberry, before its first stream is open.
TEST_F(LoweredPlayersTest, AFirstFullVolumeIsNoVolume)
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

TEST_F(LoweredPlayersTest, AFullVolumeIsReadAtOnceOnceThePlayerHasPlayed)
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

TEST_F(LoweredPlayersTest, AFirstVolumeOfNothingIsNoVolume)
{
    have({.opensAtMemory = true, .tellsFirst = 0.0, .tellsFirstFor = 2000ms});
    startAnew();
    player->play();
    pass(20ms);
    EXPECT_FALSE(read());
    pass(2s);
    EXPECT_EQ(read()->percent(), 100);
}

TEST_F(LoweredPlayersTest, APlayerThatItsUserHasSilencedIsReadAsSilent)
{
    have({}, 0.0);
    EXPECT_EQ(read()->percent(), 0);
    say();
    EXPECT_DOUBLE_EQ(player->sound(), 0.12);
    fallSilent();
    pass(300ms);
    expectBack(0.0);
}

TEST_F(LoweredPlayersTest, ANoteThatTheUserHasMovedMeanwhileGoes)
{
    have();
    say();
    die();
    player->pause();
    player->userSets(0.6);
    desktop.commands.clear();
    player->play();
    polls(2);
    EXPECT_TRUE(desktop.commands.empty());
    expectBack(0.6);
}

// We were killed while it was low, and its user has turned it up before we are back.
TEST_F(LoweredPlayersTest, AUserWhoHasMovedTheVolumeBeforeOurStartHasItsWayAlsoDuringALine)
{
    for (const double volume : {1.0, 0.6, 0.51, 0.2}) {  // 0.51 is the cube of 0.8
        have({}, 0.8);
        say();
        player->userSets(volume);
        desktop.start();
        pass(10ms);
        desktop.loweredPlayers->lineBegan();
        EXPECT_TRUE(duckWhenRead());
        pass(3s);
        fallSilent();
        polls(2);
        expectBack(volume);
    }
}

TEST_F(LoweredPlayersTest, ANoteGoesAfterThirtyDaysAlsoWhileWeRun)
{
    have();
    say();
    desktop.remove(run);
    run = 0;
    desktop.today += LoweredPlayers::daysOfNotes;
    fallSilent();
    EXPECT_EQ(desktop.notes.size(), 1U);
    ++desktop.today;
    desktop.loweredPlayers->lineBegan();
    EXPECT_TRUE(desktop.notes.empty());
}

TEST_F(LoweredPlayersTest, APlayerThatIsSeenKeepsItsNoteForEver)
{
    have();
    say();
    player->pause();
    for (int day = 0; day < 3 * LoweredPlayers::daysOfNotes; ++day) {
        ++desktop.today;
        polls(1);
        ASSERT_EQ(desktop.notes.at(0).day, desktop.today);
    }
}

TEST_F(LoweredPlayersTest, AsksForTheNotesWithTheFirstPollAndOnce)
{
    int questions = 0;
    LoweredPlayers loweredPlayers(desktop,
                                  {.now = [this] { return desktop.schedule.now(); },
                                   .today = [] { return 1; },
                                   .keep = [](const LoweredNotes&) { FAIL() << "there is nothing to keep"; },
                                   .recall = [&] { ++questions; },
                                   .wakeAt = [](VolumeTime) {}});
    loweredPlayers.appeared(1, "org.mpris.MediaPlayer2.test");
    loweredPlayers.gone(1);
    EXPECT_EQ(questions, 0);
    EXPECT_TRUE(loweredPlayers.owesAnything()) << "else nobody tells it of the poll";
    loweredPlayers.polled();
    loweredPlayers.polled();
    EXPECT_EQ(questions, 1);
    loweredPlayers.remember({});
    EXPECT_FALSE(loweredPlayers.owesAnything());
}

// Else what the process before has told the player would be read as its user's choice.
TEST_F(LoweredPlayersTest, AReadWaitsForTheNotes)
{
    have();
    say();
    const auto notes = desktop.notes;
    desktop.startWithoutNotes();
    std::optional<LoweredPlayers::Reading> reading;
    desktop.loweredPlayers->read("Music", [&reading](const auto& told) { reading = told; });
    pass(5s);
    EXPECT_FALSE(reading);
    EXPECT_EQ(desktop.notes, notes) << "they are still needed";
    desktop.loweredPlayers->remember(notes);
    pass(5s);
    ASSERT_TRUE(reading);
    EXPECT_DOUBLE_EQ(reading->volume, 1.0);
    expectBack();
}

TEST_F(LoweredPlayersTest, ANoteGoesWhenItsPlayerHasNotBeenSeenForThirtyDays)
{
    have();
    say();
    desktop.remove(run);
    run = 0;
    desktop.today += LoweredPlayers::daysOfNotes;
    die();
    EXPECT_EQ(desktop.notes.size(), 1U);
    ++desktop.today;
    die();
    EXPECT_TRUE(desktop.notes.empty());
}

TEST_F(LoweredPlayersTest, APlayerThatSignalsNothingIsSeenByThePolls)
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

TEST_F(LoweredPlayersTest, AnExactVolumeComesBackExactly)
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
TEST_F(LoweredPlayersTest, APlayerThatCutsOffComesBackExactlyEachTime)
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

TEST_F(LoweredPlayersTest, TheFirstLineOfAPlayerThatSwallowsItsFirstCommandIsLowered)
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

TEST_F(LoweredPlayersTest, APlayerThatTakesItsVolumeBackAtATracksBeginIsToldOnceMore)
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

TEST_F(LoweredPlayersTest, AUserWhoPutsTheVolumeBackDuringALineHasItsWay)
{
    have();
    say();
    pass(3s);
    player->userSets(1.0);
    pass(300ms);
    fallSilent();
    pass(300ms);
    EXPECT_EQ(desktop.commands, (Commands{0.35}));
}

TEST_F(LoweredPlayersTest, APlayerThatObeysLateIsNotTakenForAHand)
{
    have({.lag = 90ms});
    say();
    EXPECT_DOUBLE_EQ(player->sound(), 0.35);
    fallSilent();
    pass(500ms);
    expectBack();
}

TEST_F(LoweredPlayersTest, AUserWhoTakesTheVolumeBackTwiceAtATracksBeginHasItsWay)
{
    have();
    player->next();
    pass(10ms);
    say();
    player->userSets(1.0);
    pass(400ms);
    EXPECT_DOUBLE_EQ(player->sound(), 0.35) << "Strawberry does that once";
    player->userSets(1.0);
    pass(400ms);
    EXPECT_DOUBLE_EQ(player->sound(), 1.0);
    fallSilent();
    polls(1);
    EXPECT_EQ(desktop.commands, (Commands{0.35, 0.35}));
}

// Stopped at the very moment of a line: it has cut off the way back, and never heard of the lowering.
TEST_F(LoweredPlayersTest, ACutOffVolumeIsNotTakenForAHandDuringALine)
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

// A slow player: its limit has passed when it obeys.
TEST_F(LoweredPlayersTest, ACommandThatTakesLongIsNotUndoneInTheMiddleOfTheLine)
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

TEST_F(LoweredPlayersTest, AUserWhoTurnsUpAtATracksBeginHasItsWay)
{
    have();
    player->next();
    pass(10ms);
    say();
    for (int percent = 40; percent <= 100; percent += 5) {
        player->userSets(percent / 100.0);
        pass(30ms);
    }
    desktop.commands.clear();
    pass(500ms);
    fallSilent();
    polls(2);
    EXPECT_TRUE(desktop.commands.empty());
    expectBack();
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

TEST_F(LoweredPlayersTest, AHungPlayerHoldsNothingUp)
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
