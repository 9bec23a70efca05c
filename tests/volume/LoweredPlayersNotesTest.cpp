// The notes of what is owed: when they are made, asked for and forgotten.
#include "LoweredPlayersFixture.h"

#include <optional>

namespace sonvara::test {
namespace {

using LoweredPlayersNotesTest = LoweredPlayersFixture;

TEST_F(LoweredPlayersNotesTest, TheNoteStandsBeforeTheCommandIsSent)
{
    have();
    desktop.loweredPlayers->lineBegan();
    duck();
    EXPECT_EQ(desktop.notes, (LoweredNotes{{"org.mpris.MediaPlayer2.test", {1.0, 0.35}, desktop.today}}));
    EXPECT_DOUBLE_EQ(player->sound(), 1.0);  // it has not arrived
}

TEST_F(LoweredPlayersNotesTest, AsksForTheNotesWithTheFirstPollAndOnce)
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
TEST_F(LoweredPlayersNotesTest, AReadWaitsForTheNotes)
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

TEST_F(LoweredPlayersNotesTest, ANoteGoesWhenItsPlayerHasNotBeenSeenForThirtyDays)
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

TEST_F(LoweredPlayersNotesTest, ANoteGoesAfterThirtyDaysAlsoWhileWeRun)
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

TEST_F(LoweredPlayersNotesTest, APlayerThatIsSeenKeepsItsNoteForEver)
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

}  // namespace
}  // namespace sonvara::test
