// How long a poll is answered without a question.
#include "platform/linux/players/PollBoard.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

TEST(PollBoardTest, KnowsNothingUntilItIsTold)
{
    EXPECT_FALSE(PollBoard().read(PlayerKind::music, Time()));
}

TEST(PollBoardTest, AnswersForEachPlayerUntilItsTimeIsUp)
{
    PollBoard board;
    const Time now{1h};
    board.put(PlayerKind::music,
              PollBoard::Known{Picture{PlaybackStatus::playing, "A", "B", "C"}, now + 5min});
    board.put(PlayerKind::spotify, PollBoard::Known{std::nullopt, Time::max()});
    EXPECT_EQ(board.read(PlayerKind::music, now + 5min - 1ms)->text, "A||B||C||true||false");
    EXPECT_FALSE(board.read(PlayerKind::music, now + 5min));
    EXPECT_EQ(board.read(PlayerKind::spotify, now + 24h)->text, "notrunning");
    board.put(PlayerKind::spotify, std::nullopt);
    EXPECT_FALSE(board.read(PlayerKind::spotify, now));
}

}  // namespace
}  // namespace sonvara::test
