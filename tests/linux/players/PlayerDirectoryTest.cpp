#include "platform/linux/players/PlayerDirectory.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

class PlayerDirectoryTest : public testing::Test {
protected:
    Player& add(const std::string& name, const std::string& owner, std::optional<std::uint32_t> process = {})
    {
        auto* player = directory_.add("org.mpris.MediaPlayer2." + name, owner);
        EXPECT_NE(player, nullptr);
        player->process = process;
        player->introduction = Introduction{};
        player->isHeard = true;
        return *player;
    }
    void remove(const std::string& name, const std::string& owner)
    {
        directory_.remove("org.mpris.MediaPlayer2." + name, owner);
    }
    void says(Player& player, PlaybackStatus status, const std::string& title)
    {
        Track track;
        track.title = title;
        track.artist = "Artist";
        directory_.observe(player, {status, track}, now_);
        now_ += Debounce::delay;
        directory_.expire(now_);
    }
    [[nodiscard]] std::string music() const
    {
        const auto* player = directory_.chosen(PlayerKind::music);
        return player == nullptr ? "none" : player->owner;
    }

    static constexpr auto playing = PlaybackStatus::playing;
    static constexpr auto paused = PlaybackStatus::paused;
    static constexpr auto stopped = PlaybackStatus::stopped;
    PlayerDirectory directory_;
    Time now_{};
};

TEST_F(PlayerDirectoryTest, ThePlayerThatPlaysIsMeant)
{
    auto& rhythmbox = add("rhythmbox", ":1.1");
    auto& vlc = add("vlc", ":1.2");
    says(rhythmbox, playing, "One");
    says(vlc, paused, "Two");
    EXPECT_EQ(music(), ":1.1");
    says(rhythmbox, paused, "One");
    says(vlc, playing, "Two");
    EXPECT_EQ(music(), ":1.2");
}

TEST_F(PlayerDirectoryTest, OfSeveralThatPlayTheLatestIsMeant)
{
    auto& rhythmbox = add("rhythmbox", ":1.1");
    auto& vlc = add("vlc", ":1.2");
    says(vlc, playing, "Two");
    says(rhythmbox, playing, "One");
    EXPECT_EQ(music(), ":1.1");
    says(vlc, playing, "Three");
    EXPECT_EQ(music(), ":1.2");
}

TEST_F(PlayerDirectoryTest, WhenNonePlaysTheOneThatChangedLastIsMeant)
{
    auto& rhythmbox = add("rhythmbox", ":1.1");
    auto& vlc = add("vlc", ":1.2");
    says(rhythmbox, playing, "One");
    says(vlc, playing, "Two");
    says(vlc, paused, "Two");
    says(rhythmbox, paused, "One");
    EXPECT_EQ(music(), ":1.1");
    says(rhythmbox, paused, "One");  // a repetition is no change
    says(vlc, paused, "Three");
    EXPECT_EQ(music(), ":1.2");
}

TEST_F(PlayerDirectoryTest, APlayerThatStartsIdleDoesNotTakeThePlaceOfAPausedOne)
{
    says(add("rhythmbox", ":1.1"), paused, "One");
    says(add("vlc", ":1.2"), stopped, "");
    EXPECT_EQ(music(), ":1.1");
}

TEST_F(PlayerDirectoryTest, APlayerThatHasBeenIdleFromTheStartGivesPlaceToAPausedOne)
{
    says(add("vlc", ":1.2"), stopped, "");
    says(add("rhythmbox", ":1.1"), paused, "One");
    EXPECT_EQ(music(), ":1.1");
}

TEST_F(PlayerDirectoryTest, SpotifyIsNotTheDesktopsOwnPlayer)
{
    says(add("spotify", ":1.1"), playing, "One");
    EXPECT_EQ(music(), "none");
    EXPECT_EQ(directory_.snapshot(PlayerKind::music), PlayerSnapshot{});
    EXPECT_EQ(directory_.snapshot(PlayerKind::spotify).title, "One");
}

TEST_F(PlayerDirectoryTest, TwoNamesOfOneConnectionAreOnePlayer)
{
    says(add("vlc", ":1.2"), playing, "One");
    EXPECT_EQ(directory_.add("org.mpris.MediaPlayer2.vlc.instance77", ":1.2"), nullptr);
    remove("vlc", ":1.2");
    EXPECT_EQ(music(), ":1.2");
    remove("vlc.instance77", ":1.2");
    EXPECT_EQ(music(), "none");
}

TEST_F(PlayerDirectoryTest, ANameThatIsToldTwiceIsLostAtOnce)
{
    add("vlc", ":1.2");
    EXPECT_EQ(directory_.add("org.mpris.MediaPlayer2.vlc", ":1.2"), nullptr);
    remove("vlc", ":1.2");
    EXPECT_EQ(music(), "none");
}

TEST_F(PlayerDirectoryTest, AConnectionIsSpotifyAsLongAsItHasThatName)
{
    says(add("vlc", ":1.2"), playing, "One");
    EXPECT_EQ(directory_.add("org.mpris.MediaPlayer2.spotify", ":1.2"), nullptr);
    EXPECT_EQ(music(), "none");
    remove("spotify", ":1.2");
    EXPECT_EQ(music(), ":1.2");
}

TEST_F(PlayerDirectoryTest, ANameOrAnOwnerThatNobodyKnowsChangesNothing)
{
    says(add("vlc", ":1.2"), playing, "One");
    remove("vlc", ":1.3");
    remove("mpv", ":1.2");
    EXPECT_EQ(music(), ":1.2");
    EXPECT_EQ(directory_.find(":1.3"), nullptr);
    EXPECT_EQ(directory_.find(":1.2")->owner, ":1.2");
}

TEST_F(PlayerDirectoryTest, AConnectionThatLeavesAndComesBackIsAnotherPlayer)
{
    const auto serial = add("vlc", ":1.2").serial;
    EXPECT_NE(add("mpv", ":1.3").serial, serial);
    remove("vlc", ":1.2");
    EXPECT_NE(add("vlc", ":1.2").serial, serial);
}

TEST_F(PlayerDirectoryTest, AConnectionThatHasNotIntroducedItselfHidesNone)
{
    add("vlc", ":1.2", 77).introduction.reset();
    says(add("vlc.instance77", ":1.3", 77), playing, "One");
    EXPECT_EQ(music(), ":1.3");
}

TEST_F(PlayerDirectoryTest, TheEarliestDeadlineCounts)
{
    Track half;
    half.title = "one";
    auto& first = add("mpv", ":1.2");
    auto& second = add("vlc", ":1.3");
    directory_.observe(second, {playing, half}, now_);
    directory_.observe(first, {playing, half}, now_ + std::chrono::milliseconds(10));
    EXPECT_EQ(directory_.deadline(), now_ + Debounce::delay);
    directory_.expire(now_ + Debounce::delay);
    EXPECT_EQ(directory_.deadline(), now_ + Debounce::delay + std::chrono::milliseconds(10));
    half.title = "two";
    directory_.observe(second, {playing, half}, now_ + std::chrono::milliseconds(20));
    EXPECT_EQ(directory_.deadline(), now_ + Debounce::delay + std::chrono::milliseconds(10));
}

TEST_F(PlayerDirectoryTest, TwoConnectionsOfOneProcessAreOnePlayer)
{
    auto& first = add("vlc", ":1.2", 77);
    auto& second = add("vlc.instance77", ":1.3", 77);
    says(first, playing, "One");
    says(second, playing, "One");
    EXPECT_EQ(music(), ":1.2");
    remove("vlc", ":1.2");
    EXPECT_EQ(music(), ":1.3");
}

TEST_F(PlayerDirectoryTest, AProcessIsHeardUnderTheNameThatSaysMost)
{
    auto& engine = add("chromium.instance77", ":1.2", 77);
    engine.introduction->identity = "Cider";
    says(engine, playing, "One");
    says(add("cider", ":1.3", 77), playing, "One");
    EXPECT_EQ(music(), ":1.3");
    says(add("spotify", ":1.4", 77), playing, "One");
    EXPECT_EQ(music(), "none");
}

TEST_F(PlayerDirectoryTest, PlayersOfUnknownProcessesAreDifferent)
{
    says(add("vlc", ":1.2"), playing, "One");
    says(add("mpv", ":1.3"), playing, "Two");
    EXPECT_EQ(music(), ":1.3");
}

TEST_F(PlayerDirectoryTest, BrowsersProxiesAndMirrorsAreNeverMeant)
{
    auto& browser = add("firefox.instance_1_2", ":1.2");
    browser.introduction->identity = "Mozilla Firefox";
    says(browser, playing, "A video");
    EXPECT_EQ(directory_.add("org.mpris.MediaPlayer2.playerctld", ":1.3"), nullptr);
    EXPECT_EQ(directory_.add("org.mpris.MediaPlayer2.kdeconnect.mpris_1", ":1.4"), nullptr);
    EXPECT_EQ(music(), "none");
}

TEST_F(PlayerDirectoryTest, APlayerIsNotMeantBeforeItHasIntroducedItself)
{
    auto& player = add("vlc", ":1.2");
    player.introduction.reset();
    says(player, playing, "One");
    EXPECT_EQ(music(), "none");
    player.introduction = Introduction{};
    EXPECT_EQ(music(), ":1.2");
}

TEST_F(PlayerDirectoryTest, APlayerThatAnswersIsMeantBeforeOneThatDoesNot)
{
    auto& hung = add("rhythmbox", ":1.1");
    says(hung, playing, "One");
    hung.isHeard = false;
    EXPECT_EQ(music(), ":1.1");
    says(add("vlc", ":1.2"), paused, "Two");
    EXPECT_EQ(music(), ":1.2");
}

TEST_F(PlayerDirectoryTest, AHalfDescribedTrackHasADeadline)
{
    auto& player = add("mpv", ":1.2");
    Track track;
    track.title = "one.mp3";
    track.url = "file:///music/one.mp3";
    directory_.observe(player, {playing, track}, now_);
    EXPECT_EQ(directory_.deadline(), now_ + Debounce::delay);
    directory_.expire(now_ + Debounce::delay);
    EXPECT_EQ(directory_.snapshot(PlayerKind::music).title, "one");
    EXPECT_FALSE(directory_.deadline());
}

TEST_F(PlayerDirectoryTest, KeepsAFewNamesOfEachConnectionAndAHundredPlayers)
{
    auto& player = add("name0", ":1.1");
    for (int i = 1; i < 100; ++i)
        EXPECT_EQ(directory_.add("org.mpris.MediaPlayer2.name" + std::to_string(i), ":1.1"), nullptr);
    EXPECT_EQ(player.names.size(), 8U);
    for (int i = 1; i < 100; ++i) add("vlc", ":2." + std::to_string(i));
    EXPECT_EQ(directory_.add("org.mpris.MediaPlayer2.vlc", ":3.1"), nullptr);
    remove("vlc", ":2.1");
    EXPECT_NE(directory_.add("org.mpris.MediaPlayer2.vlc", ":3.1"), nullptr);
}

}  // namespace
}  // namespace sonvara::test
