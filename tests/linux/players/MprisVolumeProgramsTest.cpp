// Particular players' volumes, asked for and set over a connection that waits.
#include "PlayersFixture.h"

#include "platform/linux/players/MprisVolumePrograms.h"

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;

class MprisVolumeProgramsTest : public PlayersTest {
protected:
    void SetUp() override
    {
        start();
        programs = std::make_unique<MprisVolumePrograms>(*players, [this] { return bus.connect(); });
    }
    std::optional<int> volumeOf(const std::string& program)
    {
        std::optional<int> volume;
        onWorker([&] { volume = programs->volume(program); });
        return volume;
    }
    bool set(const std::string& program, int volume)
    {
        bool taken = false;
        onWorker([&] { taken = programs->setVolume(program, volume); });
        return taken;
    }

    std::unique_ptr<MprisVolumePrograms> programs;
};

TEST_F(MprisVolumeProgramsTest, AreReadAndSetByTheirNameOnTheBus)
{
    auto player = makePlayer({"rhythmbox"});
    player.set({{"Volume", 0.351}});
    EXPECT_EQ(volumeOf("org.mpris.MediaPlayer2.rhythmbox"), 35);
    EXPECT_TRUE(set("org.mpris.MediaPlayer2.rhythmbox", 80));
    EXPECT_DOUBLE_EQ(player.property("Volume").toDouble(), 0.8);
}

TEST_F(MprisVolumeProgramsTest, WhoDoesNotRunOrRefusesOrBabblesHasNone)
{
    EXPECT_EQ(volumeOf("org.mpris.MediaPlayer2.absent"), std::nullopt);
    EXPECT_FALSE(set("org.mpris.MediaPlayer2.absent", 80));
    EXPECT_EQ(volumeOf("no name at all"), std::nullopt);
    auto player = makePlayer({"rhythmbox"});
    player.manner = FakePlayer::Manner::failing;
    EXPECT_EQ(volumeOf("org.mpris.MediaPlayer2.rhythmbox"), std::nullopt);
    player.manner = FakePlayer::Manner::babbling;
    EXPECT_EQ(volumeOf("org.mpris.MediaPlayer2.rhythmbox"), std::nullopt);
}

TEST_F(MprisVolumeProgramsTest, AHungPlayerCostsAShortWhileOnly)
{
    auto player = makePlayer({"rhythmbox"});
    player.manner = FakePlayer::Manner::hanging;
    const auto took =
        onWorker([&] { EXPECT_EQ(programs->volume("org.mpris.MediaPlayer2.rhythmbox"), std::nullopt); });
    EXPECT_LT(took, 2s);
}

TEST_F(MprisVolumeProgramsTest, TheProgramOfANameIsTheOneOnWhichTheVolumeWasLastRead)
{
    EXPECT_EQ(programs->programOf("Music"), std::nullopt);
    auto player = makePlayer({"rhythmbox"});
    player.play("One");
    postsUntil(1);
    EXPECT_EQ(programs->programOf("Music"), std::nullopt);
    (void)run(getMusicVolume);
    EXPECT_EQ(programs->programOf("Music"), "org.mpris.MediaPlayer2.rhythmbox");
    EXPECT_EQ(programs->programOf("Spotify"), std::nullopt);
}

}  // namespace
}  // namespace sonvara::test
