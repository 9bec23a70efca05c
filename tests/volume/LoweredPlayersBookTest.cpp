// What is known of whom: players that come and go, notes, answers that come late. Each answer is given by the test.
#include "LoweredPlayersBookFixture.h"

#include <optional>
#include <string>
#include <vector>

namespace sonvara::test {
namespace {

using LoweredPlayersBookTest = LoweredPlayersBookFixture;

TEST(ReadingTest, IsAPercentageOfFullVolume)
{
    const auto percent = [](double volume) { return LoweredPlayers::Reading{1, volume}.percent(); };
    EXPECT_EQ(percent(0.584), 58);
    EXPECT_EQ(percent(0.586), 59);
    EXPECT_EQ(percent(0), 0);
    EXPECT_EQ(percent(1.5), 100);
    EXPECT_EQ(percent(-0.5), 0);
}

TEST_F(LoweredPlayersBookTest, AtTheEndNothingIsReadOrLowered)
{
    begin();
    have(1, "one");
    book.lineBegan();
    book.end();
    ask();
    EXPECT_EQ(answers, 1);
    EXPECT_FALSE(reading);
    EXPECT_TRUE(players.questions.empty());
    book.duck("Music", {1, 0.8, true}, 28);
    EXPECT_TRUE(players.told.empty());
}

TEST_F(LoweredPlayersBookTest, FiftyPlayersThatWentAreRemembered)
{
    begin();
    for (PlayerRun run = 1; run <= 51; ++run) {
        have(run, "player " + std::to_string(run));
        lower(run);
        book.lineEnded();
        book.gone(run);
    }
    ASSERT_EQ(notes.size(), 50U);
    EXPECT_EQ(notes.front(), (LoweredNote{"player 2", {0.8, 0.28}, 7}));
    EXPECT_EQ(notes.back().player, "player 51");
}

TEST_F(LoweredPlayersBookTest, ANoteOfMoreThanThirtyDaysIsGivenToNobody)
{
    have(1, "one");
    begin({{"one", {0.8, 0.28}, 7 - 31}});
    EXPECT_TRUE(players.questions.empty());
    EXPECT_FALSE(book.owesAnything());
}

TEST_F(LoweredPlayersBookTest, APlayerKeepsItsFirstName)
{
    begin();
    have(1, "one");
    book.appeared(1, "another");
    lower(1);
    EXPECT_EQ(names(), std::vector<std::string>{"one"});
}

TEST_F(LoweredPlayersBookTest, WhatNobodyKnowsChangesNothing)
{
    begin();
    have(1, "one");
    lower(1);
    book.heard(2, false, "2");
    book.gone(2);
    EXPECT_FALSE(book.mayMislead(2, at(1)));
    book.duck("Music", {2, 0.5, true}, 17);
    EXPECT_EQ(players.told, (std::vector<Told>{{1, 0.28}}));
    EXPECT_EQ(names(), std::vector<std::string>{"one"});
}

TEST_F(LoweredPlayersBookTest, TheDuckStaysWhenAnotherPlayerGoes)
{
    begin();
    have(1, "one");
    have(2, "two");
    lower(1);
    book.gone(2);
    EXPECT_EQ(players.told, (std::vector<Told>{{1, 0.28}}));
    book.lineEnded();
    EXPECT_EQ(players.told.back(), (Told{1, 0.8}));
}

TEST_F(LoweredPlayersBookTest, OnlyTheOneThatWasLoweredIsPutBackByItsName)
{
    begin();
    have(1, "one");
    lower(1);
    book.restore("Spotify");
    EXPECT_EQ(players.told.size(), 1U);
    book.restore("Music");
    EXPECT_EQ(players.told.back(), (Told{1, 0.8}));
    book.restore("Music");
    EXPECT_EQ(players.told.size(), 2U) << "once";
}

TEST_F(LoweredPlayersBookTest, APlayerThatGoesOrTellsNothingHasNoVolume)
{
    begin();
    have(1, "one");
    ask();
    players.answer(std::nullopt);
    EXPECT_EQ(answers, 1);
    EXPECT_FALSE(reading);
    ask();
    book.gone(1);
    players.answer(at(0.5));
    EXPECT_EQ(answers, 2);
    EXPECT_FALSE(reading);
    ask();
    EXPECT_EQ(answers, 3) << "there is none to be asked";
    EXPECT_TRUE(players.questions.empty());
}

TEST_F(LoweredPlayersBookTest, AReadIsALookAsWell)
{
    begin({{"one", {0.8, 0.28}, 7}});
    have(1, "one");
    players.questions.clear();
    ask();
    players.answer(at(0.28));
    EXPECT_EQ(reading->volume, 0.8);
    EXPECT_EQ(players.told, (std::vector<Told>{{1, 0.8}}));
}

TEST_F(LoweredPlayersBookTest, ADuckReadWithoutMusicLowersWhenTheMusicBegins)
{
    begin();
    book.appeared(1, "one");
    book.heard(1, false, "1");
    book.lineBegan();
    book.duck("Music", {1, 0.8, false}, 28);
    EXPECT_TRUE(players.told.empty());
    book.heard(1, true, {});
    now += 4s;
    players.answer(at(0.8));
    EXPECT_EQ(players.told, (std::vector<Told>{{1, 0.28}}));
}

TEST_F(LoweredPlayersBookTest, ADuckThatNothingCameOfIsForgottenWhenItsUserHasMovedTheVolume)
{
    begin();
    have(1, "one");
    for (const double moved : {0.5, sameWithin}) {
        book.duck("Music", {1, 0, true}, 12);
        book.lineBegan();
        ASSERT_EQ(players.questions.size(), 1U);
        players.answer(at(moved));
        book.lineEnded();
        book.lineBegan();
        EXPECT_TRUE(players.questions.empty());
        EXPECT_TRUE(players.told.empty());
        book.lineEnded();
    }
}

}  // namespace
}  // namespace sonvara::test
