// When a player is looked at, and what becomes of an answer that is late or does not come. Each is given by the test.
#include "LoweredPlayersBookFixture.h"

#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {
namespace {

using LoweredPlayersLooksTest = LoweredPlayersBookFixture;

TEST_F(LoweredPlayersLooksTest, OneThatIsOwedItsVolumeIsLookedAtAsSoonAsTheNotesAreThere)
{
    have(1, "one");
    EXPECT_TRUE(players.questions.empty());
    begin({{"one", {0.8, 0.28}, 7}});
    EXPECT_EQ(players.questions.size(), 1U);
    EXPECT_TRUE(book.owesAnything());
}

TEST_F(LoweredPlayersLooksTest, OneThatDoesNotAnswerIsAskedAgainWhenItHasToldSomethingMeanwhile)
{
    begin({{"one", {0.8, 0.28}, 7}});
    have(1, "one");
    book.heard(1, {}, "2");
    players.answer(std::nullopt);
    EXPECT_EQ(players.questions.size(), 1U);
    players.answer(std::nullopt);
    EXPECT_TRUE(players.questions.empty()) << "but not for ever";
}

TEST_F(LoweredPlayersLooksTest, ADuckThatIsToBeMadeUpForAsksOnce)
{
    begin();
    have(1, "one");
    book.duck("Music", {1, 0.8, true}, 28);
    book.lineBegan();
    book.heard(1);
    EXPECT_EQ(players.questions.size(), 1U);
    EXPECT_TRUE(book.isSettled()) << "it was told nothing";
}

TEST_F(LoweredPlayersLooksTest, ADuckWithoutALineAsksNothing)
{
    begin();
    have(1, "one");
    book.duck("Music", {1, 0.8, true}, 28);
    book.heard(1);
    EXPECT_TRUE(players.questions.empty());
}

TEST_F(LoweredPlayersLooksTest, ADuckThatIsToBeMadeUpForWaitsForTheStream)
{
    begin();
    book.appeared(1, "one");
    book.heard(1, false, "1");
    book.lineBegan();
    book.duck("Music", {1, 0.8, false}, 28);
    book.heard(1, true, {});
    players.answer(at(0));
    EXPECT_TRUE(players.told.empty());
    now += 4s;
    book.heard(1);
    players.answer(at(0.8));
    EXPECT_EQ(players.told, (std::vector<Told>{{1, 0.28}}));
}

TEST_F(LoweredPlayersLooksTest, ALineThatIsOverLowersNothingWhateverIsSeen)
{
    begin();
    have(1, "one");
    book.duck("Music", {1, 0.8, true}, 28);
    ask();
    players.answer(at(0.8));
    EXPECT_EQ(reading->volume, 0.8);
    EXPECT_TRUE(players.told.empty());
}

TEST_F(LoweredPlayersLooksTest, WhatIsPausedIsNotLoweredBeforeItPlays)
{
    begin();
    have(1, "one");
    book.duck("Music", {1, 0.8, true}, 28);
    book.lineBegan();
    players.answer(at(0.8, false));
    EXPECT_TRUE(players.told.empty());
}

TEST_F(LoweredPlayersLooksTest, OneThatHasObeyedIsSettled)
{
    begin();
    have(1, "one");
    lower(1);
    EXPECT_FALSE(book.isSettled());
    players.answer(at(0.28));
    EXPECT_TRUE(book.isSettled());
    EXPECT_TRUE(book.owesAnything());
}

TEST_F(LoweredPlayersLooksTest, OneThatHasObeyedStaysLowThroughAnotherLine)
{
    begin();
    have(1, "one");
    lower(1);
    players.answer(at(0.28));
    book.lineBegan();
    book.lineEnded();
    EXPECT_EQ(players.told, (std::vector<Told>{{1, 0.28}}));
}

TEST_F(LoweredPlayersLooksTest, OneThatIsLoweredAgainIsLookedAtAfterIt)
{
    begin();
    have(1, "one");
    lower(1);
    players.answer(at(0.28));
    book.lineEnded();
    players.answer(at(0.28));
    EXPECT_TRUE(players.questions.empty());
    book.lineBegan();
    EXPECT_EQ(players.told.back(), (Told{1, 0.28}));
    now += 200ms;
    players.answer(at(0.5));
    EXPECT_TRUE(notes.empty()) << "its user's hand";
}

TEST_F(LoweredPlayersLooksTest, WhatAPlayerTellsThatHasGoneIsNoHand)
{
    begin();
    have(1, "one");
    lower(1);
    book.gone(1);
    now += 200ms;
    players.answer(at(0.5));
    EXPECT_TRUE(players.questions.empty());
    EXPECT_EQ(players.told, (std::vector<Told>{{1, 0.28}}));
    EXPECT_EQ(names(), std::vector<std::string>{"one"});
}

TEST_F(LoweredPlayersLooksTest, WakesWhenTheFirstPlayerIsDue)
{
    begin({{"one", {0.8, 0.28}, 7}, {"two", {0.8, 0.28}, 7}});
    have(1, "one");
    have(2, "two");
    for (const auto& [early, late] : {std::pair<PlayerRun, PlayerRun>{1, 2}, {2, 1}}) {
        players.told.clear();
        ASSERT_EQ(players.questions.size(), 2U);
        if (players.questions.front().first != early) std::swap(players.questions[0], players.questions[1]);
        const auto first = now;
        players.answer(at(0.28));
        now += 50ms;
        players.answer(at(0.28));
        EXPECT_EQ(players.told, (std::vector<Told>{{early, 0.8}, {late, 0.8}}));
        players.answer(at(0.28));
        players.answer(at(0.28));
        EXPECT_TRUE(players.questions.empty());
        EXPECT_EQ(wakesAt, first + 100ms);
        now = first + 100ms;
        book.wake();
        ASSERT_EQ(players.questions.size(), 1U);
        EXPECT_EQ(players.questions.front().first, early);
        now += 50ms;
        book.wake();
    }
}

TEST_F(LoweredPlayersLooksTest, ALookFromBeforeACommandIsRepeated)
{
    begin();
    have(1, "one");
    lower(1);
    ASSERT_EQ(players.questions.size(), 1U);
    book.lineEnded();
    EXPECT_EQ(players.told.size(), 2U);
    EXPECT_EQ(players.questions.size(), 1U) << "one at a time";
    EXPECT_FALSE(book.isSettled());
    players.answer(at(0.5));
    EXPECT_EQ(names(), std::vector<std::string>{"one"}) << "no hand: it is from before";
    EXPECT_EQ(players.questions.size(), 1U);
    now += 200ms;
    players.answer(at(0.8));
    EXPECT_TRUE(book.isSettled());
    EXPECT_TRUE(notes.empty());
    EXPECT_FALSE(book.owesAnything());
}

}  // namespace
}  // namespace sonvara::test
