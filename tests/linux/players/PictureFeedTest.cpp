#include "platform/linux/players/PictureFeed.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

Picture playing(const std::string& title)
{
    return {PlaybackStatus::playing, title, "Artist", "Album", false};
}

std::string nameIn(const std::optional<Notification>& notification)
{
    return notification ? std::get<std::string>(notification->userInfo->at("Name")) : "(none)";
}

TEST(PictureFeedTest, WritesANotificationAsThePlayersDo)
{
    const auto music = notificationOf(PlayerKind::music, {PlaybackStatus::playing, "T", "A, B", "C", true});
    EXPECT_EQ(music.name, "com.apple.Music.playerInfo");
    EXPECT_EQ(*music.userInfo, (UserInfo{{"Player State", std::string("Playing")},
                                         {"Name", std::string("T")},
                                         {"Artist", std::string("A, B")},
                                         {"Album", std::string("C")},
                                         {"Loved", true}}));
    const auto spotify = notificationOf(PlayerKind::spotify, {PlaybackStatus::paused, "T", "", "", false});
    EXPECT_EQ(spotify.name, "com.spotify.client.PlaybackStateChanged");
    EXPECT_EQ(spotify.userInfo->at("Player State"), Variant(std::string("Paused")));
    EXPECT_EQ(spotify.userInfo->at("Loved"), Variant(false));
}

TEST(PictureFeedTest, TellsTheEndAsStoppedWithAnEmptyName)
{
    const auto end = notificationOf(PlayerKind::music, Picture{});
    EXPECT_EQ(end.userInfo->at("Player State"), Variant(std::string("Stopped")));
    EXPECT_EQ(end.userInfo->at("Name"), Variant(std::string()));
}

TEST(PictureFeedTest, TellsEachChangeOnceAndAtOnce)
{
    PictureFeed feed(PlayerKind::music);
    Time now{};
    EXPECT_EQ(nameIn(feed.follow(Picture{}, now)), "(none)");
    EXPECT_EQ(nameIn(feed.follow(playing("One"), now)), "One");
    EXPECT_EQ(nameIn(feed.follow(playing("One"), now)), "(none)");
    EXPECT_EQ(nameIn(feed.follow(playing("Two"), now + 1s)), "Two");
    EXPECT_FALSE(feed.deadline());
}

TEST(PictureFeedTest, WhatThereWasAtTheStartIsNoChange)
{
    PictureFeed feed(PlayerKind::music);
    feed.begin(playing("One"));
    EXPECT_EQ(nameIn(feed.follow(playing("One"), Time{})), "(none)");
    EXPECT_EQ(nameIn(feed.follow(Picture{}, Time{})), "");
}

TEST(PictureFeedTest, AFloodIsToldByItsLatestTrack)
{
    PictureFeed feed(PlayerKind::music);
    Time now{};
    int told = 0;
    std::string last;
    for (int i = 0; i < 5000; ++i, now += 200us) {
        if (const auto notification = feed.follow(playing(std::to_string(i)), now)) {
            ++told;
            last = nameIn(notification);
        }
    }
    EXPECT_LE(told, 30);
    ASSERT_TRUE(feed.deadline());
    EXPECT_EQ(nameIn(feed.follow(playing("4999"), *feed.deadline())), "4999");
    EXPECT_FALSE(feed.deadline());
}

TEST(PictureFeedTest, AFewQuickChangesAreAllTold)
{
    PictureFeed feed(PlayerKind::music);
    for (int i = 0; i < PictureFeed::burst; ++i)
        EXPECT_EQ(nameIn(feed.follow(playing(std::to_string(i)), Time{})), std::to_string(i));
}

TEST(PictureFeedTest, AChangeUndoneBeforeItsTurnIsNone)
{
    PictureFeed feed(PlayerKind::music);
    const Time now{};
    for (int i = 0; i < PictureFeed::burst; ++i) (void)feed.follow(playing(std::to_string(i)), now);
    EXPECT_EQ(nameIn(feed.follow(playing("Two"), now + 1ms)), "(none)");
    EXPECT_EQ(feed.deadline(), now + PictureFeed::interval);
    EXPECT_EQ(nameIn(feed.follow(playing("9"), now + 2ms)), "(none)");
    EXPECT_FALSE(feed.deadline());
}

}  // namespace
}  // namespace sonvara::test
