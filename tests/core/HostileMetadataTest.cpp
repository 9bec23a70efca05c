// Metadata that nobody would call a title, through the whole core: nothing of it becomes anything but text.
#include "app/AppDelegate.h"
#include "fakes/FakeDesktop.h"
#include "support/PlayerScripts.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sonvara::test {
namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::MatchesRegex;

/// A text, made only when its test runs.
struct HostileText {
    std::string begin;
    std::string_view part = {};  ///< what follows, again and again, up to a megabyte

    [[nodiscard]] std::string make() const
    {
        std::string text = begin;
        while (!part.empty() && text.size() < 1'000'000) text += part;
        return text;
    }
};

const std::vector<HostileText> hostileTexts{
    {"", "x"},
    {"", "a b "},
    {"", "e\u0301"},  // as few as half as many characters as code points
    {"a", "\u0301"},
    {"a", "\u0301\u0316"},  // not in the order of the normal form
    {"", "\n"},
    {std::string("before\0after", 12)},
    {std::string("\0", 1)},
    {"\x01\x02\x07\x08\x0b\x0c\x1b\x7f"},
    {"\x1b[2J\x1b]0;title\x07\x1b[31mred"},
    {"<b>bold</b> &amp; <a href=\"file:///etc/passwd\">&#0;</a> <speak><break time=\"10h\"/></speak>"},
    {"\u202eesrever\u202c \u2066\u2067\u2069 \u200f"},
    {"lone \xed\xa0\x80 surrogates \xed\xbf\xbf"},
    {"\xff\xfe\xc0\x80\xf8\x88\x80\x80\x80 \xe2\x82"},
    {"||"},
    {"a||b||c||true||true||true"},
    {"notrunning"},
    {"error"},
    {"\" to quit\ntell application \"Finder\" to delete every file --"},
    {"tell application \"Music\" to set sound volume to 0"},
    {"--dangerously-skip-permissions"},
    {"$(reboot) `reboot` ; reboot & | > /etc/passwd"},
    {"%s%n%1$s {} {0} \\u0000 \\"},
    {"\u2028\u2029\u0085\ufeff\ufffe"},
};

class HostileMetadataTest : public testing::TestWithParam<std::size_t> {
protected:
    FakeDesktop desktop;
    DJLog* log = &DJLog::shared();
    std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>(desktop.platform);

    HostileMetadataTest()
    {
        desktop.files.executables = {"/usr/bin/claude"};
        desktop.players.music.isRunning = true;
        delegate->applicationDidFinishLaunching();
        desktop.time.advance(1s);
    }

    void play(const std::string& title, const std::string& artist, const std::string& album)
    {
        auto& music = desktop.players.music;
        music.isPlaying = true;
        music.title = title;
        music.artist = artist;
        music.album = album;
        desktop.notifications.deliver(FakePlayers::notificationOf(music, musicNotification));
        desktop.time.advance(7s);
        while (desktop.voice.isSpeaking()) {
            desktop.voice.finish();
            desktop.time.run();
        }
    }

    void expectAMenuAsAlways()
    {
        const auto& menu = *desktop.statusBar.state.menu;
        const std::vector<std::string> titles{"Currently Playing", "", "DJ Chat:",    "", "",
                                              "Mute DJ",           "", "Settings...", "", "Quit Sonvara"};
        ASSERT_EQ(menu.items.size(), titles.size());
        for (std::size_t i = 0; i < titles.size(); ++i) {
            if (!titles[i].empty()) {
                EXPECT_EQ(menu.items[i].title, titles[i]);
            }
            EXPECT_EQ(menu.items[i].isEnabled, i == 5 || i == 7 || i == 9);
        }
    }
};

TEST_P(HostileMetadataTest, IsOnlyText)
{
    const auto text = hostileTexts[GetParam()].make();
    play(text, text, text);
    expectAMenuAsAlways();
    for (const bool withTool : {false, true}) {
        if (text.size() > 1000) break;  // that takes a while, and has been seen
        desktop.defaults.values["aiIntros"] = withTool;
        desktop.launcher.behaviour.output = text + "\n";
        const std::string number = withTool ? " 2" : " 1";
        play(text, "Artist" + number, "Album");
        play("Title" + number, text, "Album" + number);
        play("Next title" + number, "Artist", text);
        play(text, text, text);
        expectAMenuAsAlways();
    }
    play("An Honest Song", "Artist", "Its Album");
    EXPECT_FALSE(desktop.voice.lines.empty());
    EXPECT_EQ(desktop.statusBar.state.menu->items.at(1).title, "An Honest Song - Artist");
    // The fake players fail the test at any other script.
    EXPECT_THAT(desktop.players.volumeCommands, Each(MatchesRegex("Music(\\?|=[0-9]+)")));
    for (const auto& child : desktop.launcher.children) {
        EXPECT_EQ(child->setup.executable, "/usr/bin/claude");
        EXPECT_EQ(child->setup.arguments.size(), desktop.launcher.children[0]->setup.arguments.size());
    }
    EXPECT_FALSE(log->plainText().empty());
}

INSTANTIATE_TEST_SUITE_P(All, HostileMetadataTest, testing::Range(std::size_t{0}, hostileTexts.size()));

}  // namespace
}  // namespace sonvara::test
