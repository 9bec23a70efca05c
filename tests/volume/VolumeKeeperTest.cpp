// What the keeper writes down and answers while a player is lowered.
#include "VolumeKeeperFixture.h"

#include <gmock/gmock.h>

namespace sonvara::test {
namespace {

using testing::ElementsAre;

TEST_F(VolumeKeeperTest, ScriptsAndAnswersPassUnchanged)
{
    poll();
    EXPECT_EQ(read().integer, 100);
    (void)set(35);
    EXPECT_THAT(desktop.scripts,
                ElementsAre(musicPollScript(), "tell application \"Music\" to get sound volume",
                            "tell application \"Music\" to set sound volume to 35"));
}

TEST_F(VolumeKeeperTest, ThePlayerIsWrittenDownBeforeItIsLowered)
{
    std::optional<VolumeNotes> before;
    desktop.whileSetting = [&] { before = notes(); };
    duck();
    EXPECT_EQ(before, (VolumeNotes{{"player one", 100, 35}}));
}

TEST_F(VolumeKeeperTest, TheNoteIsForgottenWhenTheVolumeIsBack)
{
    duck();
    EXPECT_TRUE(store.text);
    (void)set(100);
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, AVolumeThatIsNotChangedNeedsNoNote)
{
    desktop.running["player one"] = 12;
    duck();
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, ALoweredPlayerReadsAsLoudAsItsUserWantsIt)
{
    duck();
    EXPECT_EQ(read().integer, 100);
    duck();
    EXPECT_EQ(volume(), 35) << "lines that follow close on each other do not lower it twice";
    EXPECT_EQ(notes(), (VolumeNotes{{"player one", 100, 35}}));
    (void)set(100);
    EXPECT_EQ(volume(), 100);
    EXPECT_FALSE(store.text);
}

TEST_F(VolumeKeeperTest, APlayerThatIsPutBackWhileItIsReadReadsAsLoudAsItsUserWantsIt)
{
    duck();
    desktop.whileReading = [this] { (void)set(100); };
    EXPECT_EQ(read().integer, 100) << "the answer was 35 when the player gave it";
}

TEST_F(VolumeKeeperTest, SetLowerThanBeforeTheFirstVolumeIsKept)
{
    duck();
    (void)read();
    (void)set(12);
    EXPECT_EQ(notes(), (VolumeNotes{{"player one", 100, 12}}));
    keeper->restoreAll();
    EXPECT_EQ(volume(), 100);
}

TEST_F(VolumeKeeperTest, LoweredAgainFromWhereTheUserPutItThatVolumeCounts)
{
    duck();
    desktop.running["player one"] = 80;
    duck();
    EXPECT_EQ(notes(), (VolumeNotes{{"player one", 80, 28}}));
}

}  // namespace
}  // namespace sonvara::test
