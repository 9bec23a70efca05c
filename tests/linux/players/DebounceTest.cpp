#include "platform/linux/players/Debounce.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

// One player in virtual time: `says` is a message at the present moment, `passes` lets time go by
// and wakes the debounce when it asked for it.
class DebounceTest : public testing::Test {
protected:
    void says(std::optional<PlaybackStatus> status, std::optional<Track> track = std::nullopt)
    {
        merge(said_, {status, std::move(track)});
        debounce_.observe(said_, now_);
        note();
    }
    void passes(std::chrono::milliseconds time)
    {
        const auto end = now_ + time;
        while (debounce_.deadline() && *debounce_.deadline() <= end) {
            now_ = *debounce_.deadline();
            debounce_.expire(now_);
            note();
        }
        now_ = end;
    }
    static Track song(const std::string& title, const std::string& artist = "Artist")
    {
        Track track;
        track.title = title;
        track.artist = artist;
        return track;
    }
    static Track advertisement()
    {
        auto track = song("Buy this");
        track.id = "/com/spotify/ad/1";
        return track;
    }
    [[nodiscard]] std::vector<std::string> told() const { return told_; }

    static constexpr auto playing = PlaybackStatus::playing;
    static constexpr auto paused = PlaybackStatus::paused;
    static constexpr auto stopped = PlaybackStatus::stopped;
    Debounce debounce_;

private:
    void note()
    {
        if (debounce_.snapshot() == last_) return;
        last_ = debounce_.snapshot();
        told_.push_back((last_.status == playing  ? "plays "
                         : last_.status == paused ? "paused "
                                                  : "stopped ") +
                        last_.title + "/" + last_.artist);
    }

    Time now_{};
    PlayerState said_;
    PlayerSnapshot last_;
    std::vector<std::string> told_;
};

using Told = std::vector<std::string>;

TEST_F(DebounceTest, ACompleteTrackThatPlaysIsToldWithoutDelay)
{
    says(playing, song("One"));
    EXPECT_EQ(told(), Told{"plays One/Artist"});
    EXPECT_FALSE(debounce_.deadline());
    says(std::nullopt, song("Two"));
    EXPECT_EQ(told(), (Told{"plays One/Artist", "plays Two/Artist"}));
    EXPECT_FALSE(debounce_.deadline());
}

TEST_F(DebounceTest, AnIncompleteTrackWaitsForItsTags)
{
    says(playing, song("One"));
    says(std::nullopt, song("two.mp3", ""));
    passes(100ms);
    says(std::nullopt, song("Two"));
    passes(1s);
    EXPECT_EQ(told(), (Told{"plays One/Artist", "plays Two/Artist"}));
}

TEST_F(DebounceTest, ATrackThatStaysIncompleteIsToldAfter300Milliseconds)
{
    says(playing, song("stream", ""));
    passes(299ms);
    EXPECT_EQ(told(), Told{});
    passes(1ms);
    EXPECT_EQ(told(), Told{"plays stream/"});
    EXPECT_FALSE(debounce_.deadline());
}

TEST_F(DebounceTest, RepeatingAnIncompleteTrackDoesNotProlongTheWait)
{
    says(playing, song("stream", ""));
    for (int i = 0; i < 3; ++i) {
        passes(99ms);
        says(std::nullopt, song("stream", ""));
    }
    passes(3ms);
    EXPECT_EQ(told(), Told{"plays stream/"});
}

TEST_F(DebounceTest, AnotherIncompleteTrackHasItsOwnTime)
{
    says(playing, song("one.mp3", ""));
    passes(200ms);
    says(std::nullopt, song("two.mp3", ""));
    passes(200ms);
    says(std::nullopt, song("Two"));
    passes(1s);
    EXPECT_EQ(told(), Told{"plays Two/Artist"});
}

TEST_F(DebounceTest, ATitleThatScrollsIsToldAfterASecond)
{
    says(playing, song("title 0", ""));
    for (int i = 1; i <= 10; ++i) {
        passes(100ms);
        says(std::nullopt, song("title " + std::to_string(i), ""));
    }
    EXPECT_EQ(told(), Told{"plays title 9/"});
}

TEST_F(DebounceTest, ATitleThatScrollsIsNotToldBefore)
{
    says(playing, song("title 0", ""));
    for (int i = 1; i <= 9; ++i) {
        passes(100ms);
        says(std::nullopt, song("title " + std::to_string(i), ""));
    }
    passes(99ms);
    EXPECT_EQ(told(), Told{});
    passes(1ms);
    EXPECT_EQ(told(), Told{"plays title 9/"});
}

TEST_F(DebounceTest, AStopBetweenTwoTracksIsNoStop)
{
    says(playing, song("One"));
    says(stopped);
    passes(200ms);
    says(playing, song("Two"));
    passes(1s);
    EXPECT_EQ(told(), (Told{"plays One/Artist", "plays Two/Artist"}));
}

TEST_F(DebounceTest, AStopThatLastsIsAStop)
{
    says(playing, song("One"));
    says(stopped);
    passes(299ms);
    says(stopped);
    EXPECT_EQ(told(), Told{"plays One/Artist"});
    passes(1ms);
    EXPECT_EQ(told(), (Told{"plays One/Artist", "stopped /"}));
}

TEST_F(DebounceTest, APauseAtATrackChangeIsNoPause)
{
    says(playing, song("One"));
    says(paused);
    passes(50ms);
    says(std::nullopt, song("Two"));
    passes(50ms);
    says(playing);
    passes(50ms);
    says(paused);
    passes(50ms);
    says(playing);
    passes(1s);
    EXPECT_EQ(told(), (Told{"plays One/Artist", "plays Two/Artist"}));
}

TEST_F(DebounceTest, APauseThatLastsIsAPauseAndItsEndIsToldAtOnce)
{
    says(playing, song("One"));
    says(paused);
    passes(149ms);
    EXPECT_EQ(told(), Told{"plays One/Artist"});
    passes(1ms);
    says(playing);
    EXPECT_EQ(told(), (Told{"plays One/Artist", "paused One/Artist", "plays One/Artist"}));
}

TEST_F(DebounceTest, AStopAfterAPauseHasTheTimeOfAGap)
{
    says(playing, song("One"));
    says(paused);
    passes(100ms);
    says(stopped);
    passes(150ms);
    says(playing, song("Two"));
    EXPECT_EQ(told(), (Told{"plays One/Artist", "plays Two/Artist"}));
}

TEST_F(DebounceTest, ATrackThatComesWithAPauseHasTheTimeOfAGap)
{
    says(playing, song("One"));
    says(paused, song("Two"));
    passes(250ms);
    says(playing);
    EXPECT_EQ(told(), (Told{"plays One/Artist", "plays Two/Artist"}));
}

TEST_F(DebounceTest, AGapFollowedByAnIncompleteTrackGivesTheTagsTheirTime)
{
    says(playing, song("One"));
    says(stopped);
    passes(250ms);
    says(playing, song("two.mp3", ""));
    passes(250ms);
    says(std::nullopt, song("Two"));
    passes(1s);
    EXPECT_EQ(told(), (Told{"plays One/Artist", "plays Two/Artist"}));
}

TEST_F(DebounceTest, APausedTrackIsToldAtOnceWhenNothingPlayed)
{
    says(paused, song("One"));
    EXPECT_EQ(told(), Told{"paused One/Artist"});
}

TEST_F(DebounceTest, AnEmptyPlayerIsToldAtOnce)
{
    says(stopped);
    EXPECT_EQ(debounce_.snapshot(), PlayerSnapshot{});
    EXPECT_FALSE(debounce_.deadline());
}

TEST_F(DebounceTest, AnAdvertisementEndsTheTrack)
{
    says(playing, song("One"));
    says(std::nullopt, advertisement());
    passes(300ms);
    says(std::nullopt, song("Two"));
    EXPECT_EQ(told(), (Told{"plays One/Artist", "stopped /", "plays Two/Artist"}));
}

TEST_F(DebounceTest, AnAdvertisementThatIsOverAtOnceIsNoStop)
{
    says(playing, song("One"));
    says(std::nullopt, advertisement());
    passes(299ms);
    says(std::nullopt, song("Two"));
    EXPECT_EQ(told(), (Told{"plays One/Artist", "plays Two/Artist"}));
}

}  // namespace
}  // namespace sonvara::test
