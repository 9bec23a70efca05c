#include "platform/linux/players/PlayerIdentity.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

NameKind kindOf(const std::string& name)
{
    return kindOfName("org.mpris.MediaPlayer2." + name);
}

bool isBrowserNamed(const std::string& name, const std::string& identity, const std::string& desktopEntry)
{
    return isBrowser(kindOf(name), {identity, desktopEntry});
}

TEST(PlayerIdentityTest, SpotifyIsKnownByItsName)
{
    EXPECT_EQ(kindOf("spotify"), NameKind::spotify);
    EXPECT_EQ(kindOf("spotify.instance4711"), NameKind::spotify);
    EXPECT_EQ(kindOf("spotifyd"), NameKind::player);
    EXPECT_EQ(kindOf("spotifyd.instance1"), NameKind::player);
}

TEST(PlayerIdentityTest, EveryOtherPlayerIsAPlayer)
{
    for (const auto* name :
         {"audacious", "mpv", "vlc", "vlc.instance12", "strawberry", "rhythmbox", "mpd", "cider"})
        EXPECT_EQ(kindOf(name), NameKind::player) << name;
}

TEST(PlayerIdentityTest, ProxiesAndMirrorsAreNoPlayers)
{
    for (const auto* name : {"playerctld", "kdeconnect.mpris_abc", "plasma-browser-integration"})
        EXPECT_EQ(kindOf(name), NameKind::ignored) << name;
}

TEST(PlayerIdentityTest, OtherNamesAreNoPlayers)
{
    for (const auto* name : {"", "org.mpris.MediaPlayer2", "org.mpris.MediaPlayer2.",
                             "org.mpris.MediaPlayer2Foo.vlc", ":1.5", "org.freedesktop.DBus"})
        EXPECT_EQ(kindOfName(name), NameKind::ignored) << name;
}

TEST(PlayerIdentityTest, BrowsersAreKnownByWhatTheySayOfThemselves)
{
    EXPECT_TRUE(isBrowserNamed("firefox.instance_1_23", "Mozilla Firefox", "firefox"));
    EXPECT_TRUE(isBrowserNamed("firefox.instance_1_23", "Nightly", "firefox-nightly"));
    EXPECT_TRUE(isBrowserNamed("chromium.instance99", "Chromium", "chromium-browser"));
    EXPECT_TRUE(isBrowserNamed("chromium.instance99", "Google Chrome", ""));
    EXPECT_TRUE(isBrowserNamed("chromium.instance99", "Chrome", "google-chrome"));
    EXPECT_TRUE(isBrowserNamed("brave.instance99", "Brave", "brave-browser"));
    EXPECT_TRUE(isBrowserNamed("edge.instance99", "Microsoft Edge", "microsoft-edge"));
    EXPECT_TRUE(isBrowserNamed("vivaldi.instance99", "Vivaldi", "vivaldi-stable"));
    EXPECT_TRUE(isBrowserNamed("opera.instance99", "Opera", "opera"));
    EXPECT_TRUE(isBrowserNamed("anything", "", "org.mozilla.firefox"));
}

TEST(PlayerIdentityTest, EachBrowserIsKnownByItsWordAloneAndInAnyCase)
{
    for (const auto* word :
         {"firefox",     "mozilla", "librewolf", "waterfox", "floorp",   "chromium",  "chrome",  "brave",
          "edge",        "vivaldi", "opera",     "epiphany", "falkon",   "konqueror", "thorium", "browser",
          "qutebrowser", "MOZILLA", "BRAVE",     "Opera2",   "the edge", "edge{"})
        EXPECT_TRUE(isBrowserNamed("anything", word, "")) << word;
    for (const auto* word : {"browse", "edges", "édge", "Àedge", "oper@"})
        EXPECT_FALSE(isBrowserNamed("anything", word, "")) << word;
}

TEST(PlayerIdentityTest, AMusicClientOnABrowsersEngineCounts)
{
    EXPECT_FALSE(isBrowserNamed("chromium.instance7", "Cider", "cider"));
    EXPECT_FALSE(isBrowserNamed("chromium.instance7", "Cider", ""));
}

TEST(PlayerIdentityTest, TheNameDecidesOnlyWhenThePlayerSaysNothing)
{
    EXPECT_TRUE(isBrowserNamed("chromium.instance7", "", ""));
    EXPECT_TRUE(isBrowserNamed("firefox.instance_1_2", "", ""));
    EXPECT_FALSE(isBrowserNamed("mpv", "", ""));
    EXPECT_FALSE(isBrowserNamed("spotify", "Chromium", "chromium"));
}

TEST(PlayerIdentityTest, PlayersWithRelatedWordsAreNoBrowsers)
{
    EXPECT_FALSE(isBrowserNamed("operetta", "Operetta", "operetta"));
    EXPECT_FALSE(isBrowserNamed("gmusicbrowser", "gmusicbrowser", "gmusicbrowser"));
    EXPECT_FALSE(isBrowserNamed("vlc", "VLC media player", "vlc"));
}

}  // namespace
}  // namespace sonvara::test
