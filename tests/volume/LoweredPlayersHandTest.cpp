// The user's hand wins, whenever it moves the volume.
#include "LoweredPlayersFixture.h"

namespace sonvara::test {
namespace {

using LoweredPlayersHandTest = LoweredPlayersFixture;

TEST_F(LoweredPlayersHandTest, TheUsersHandDuringALineWins)
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
TEST_F(LoweredPlayersHandTest, TheUsersHandAfterALineWins)
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

TEST_F(LoweredPlayersHandTest, ADragRightAfterTheLineWins)
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

TEST_F(LoweredPlayersHandTest, ADuckThatCameTooLateIsForgottenWhenTheUserHasMovedTheVolume)
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

TEST_F(LoweredPlayersHandTest, AUserWhoPutsTheVolumeBackDuringALineHasItsWay)
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

TEST_F(LoweredPlayersHandTest, AUserWhoTakesTheVolumeBackTwiceAtATracksBeginHasItsWay)
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

TEST_F(LoweredPlayersHandTest, AUserWhoTurnsUpAtATracksBeginHasItsWay)
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

TEST_F(LoweredPlayersHandTest, ANoteThatTheUserHasMovedMeanwhileGoes)
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
TEST_F(LoweredPlayersHandTest, AUserWhoHasMovedTheVolumeBeforeOurStartHasItsWayAlsoDuringALine)
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

}  // namespace
}  // namespace sonvara::test
