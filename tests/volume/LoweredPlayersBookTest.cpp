// What is known of whom: players that come and go, notes, answers that come late. Each answer is given by the test.
#include "volume/LoweredPlayers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

struct Told {
    PlayerRun run;
    double volume;
    bool operator==(const Told&) const = default;
};

/// Answers when the test says so.
struct SilentPlayers final : VolumePlayers {
    PlayerRun music = 1;
    std::vector<Told> told;
    std::deque<std::pair<PlayerRun, Answer>> questions;

    [[nodiscard]] PlayerRun meant(const std::string& player) override
    {
        return player == "Music" ? music : 0;
    }
    void read(PlayerRun run, const Answer& answer) override { questions.emplace_back(run, answer); }
    void look(PlayerRun run, const Answer& answer) override { questions.emplace_back(run, answer); }
    void tell(PlayerRun run, double volume) override { told.push_back({run, volume}); }
    /// The oldest question.
    void answer(const std::optional<VolumeLook>& look)
    {
        ASSERT_FALSE(questions.empty());
        const auto asked = questions.front().second;
        questions.pop_front();
        asked(look);
    }
};

class LoweredPlayersBookTest : public testing::Test {
protected:
    SilentPlayers players;
    VolumeTime now{100h};
    LoweredNotes notes;
    std::optional<VolumeTime> wakesAt;
    LoweredPlayers book{players,
                        {.now = [this] { return now; },
                         .today = [] { return 7; },
                         .keep = [this](const LoweredNotes& all) { notes = all; },
                         .recall = [] {},
                         .wakeAt = [this](VolumeTime due) { wakesAt = due; }}};
    std::optional<LoweredPlayers::Reading> reading;
    int answers = 0;

    void begin(const LoweredNotes& kept = {}) { book.remember(kept); }
    /// It has played for long.
    void have(PlayerRun run, const std::string& name)
    {
        book.appeared(run, name);
        book.heard(run, true, "1");
        now += 10s;
    }
    void ask()
    {
        book.read("Music", [this](const auto& told) {
            reading = told;
            ++answers;
        });
    }
    static VolumeLook at(double volume, bool isPlaying = true) { return {isPlaying, volume, "1", 10s}; }
    void lower(PlayerRun run)
    {
        book.lineBegan();
        book.duck("Music", {run, 0.8, true}, 28);
    }
    std::vector<std::string> names()
    {
        std::vector<std::string> found;
        for (const auto& note : notes) found.push_back(note.player);
        return found;
    }
};

TEST(ReadingTest, IsAPercentageOfFullVolume)
{
    const auto percent = [](double volume) { return LoweredPlayers::Reading{1, volume}.percent(); };
    EXPECT_EQ(percent(0.584), 58);
    EXPECT_EQ(percent(0.586), 59);
    EXPECT_EQ(percent(0), 0);
    EXPECT_EQ(percent(1.5), 100);
    EXPECT_EQ(percent(-0.5), 0);
}

TEST_F(LoweredPlayersBookTest, FiftyPlayersThatWentAreRemembered)
{
    begin();
    for (PlayerRun run = 1; run <= 51; ++run) {
        have(run, "player " + std::to_string(run));
        lower(run);
        book.gone(run);
        book.lineEnded();
    }
    ASSERT_EQ(notes.size(), 50U);
    EXPECT_EQ(notes.front(), (LoweredNote{"player 2", {0.8, 0.28}, 7}));
    EXPECT_EQ(notes.back().player, "player 51");
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
    book.duck("Music", {1, 0.8, true}, 28);
    book.lineBegan();
    ASSERT_EQ(players.questions.size(), 1U);
    players.answer(at(0.5));
    book.lineEnded();
    book.lineBegan();
    EXPECT_TRUE(players.questions.empty());
    EXPECT_TRUE(players.told.empty());
}

TEST_F(LoweredPlayersBookTest, WakesWhenTheFirstPlayerIsDue)
{
    begin({{"one", {0.8, 0.28}, 7}, {"two", {0.8, 0.28}, 7}});
    have(1, "one");
    have(2, "two");
    const auto first = now;
    players.answer(at(0.28));
    now += 50ms;
    players.answer(at(0.28));
    EXPECT_EQ(players.told, (std::vector<Told>{{1, 0.8}, {2, 0.8}}));
    players.answer(at(0.28));
    players.answer(at(0.28));
    EXPECT_TRUE(players.questions.empty());
    EXPECT_EQ(wakesAt, first + 100ms);
    now = first + 100ms;
    book.wake();
    ASSERT_EQ(players.questions.size(), 1U);
    EXPECT_EQ(players.questions.front().first, 1U);
}

TEST_F(LoweredPlayersBookTest, ALookFromBeforeACommandIsRepeated)
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
