// The whole core wired together, on a desktop of fakes.
#pragma once

#include "app/AppDelegate.h"
#include "fakes/FakeDesktop.h"
#include "support/PlayerScripts.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace sonvara::test {

class AppDelegateTest : public testing::Test {
protected:
    FakeDesktop desktop;
    DJLog* log = &DJLog::shared();
    std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>(desktop.platform);

    void launch() { delegate->applicationDidFinishLaunching(); }
    void play(const std::string& title)
    {
        auto& music = desktop.players.music;
        music.isRunning = true;
        music.isPlaying = true;
        music.title = title;
        music.artist = "Artist of " + title;
        music.album = "Album of " + title;
    }
    void notify(const std::string& title, const std::string& state = "Playing")
    {
        desktop.notifications.deliver({musicNotification, UserInfo{{"Player State", state},
                                                                   {"Name", title},
                                                                   {"Artist", "Artist of " + title},
                                                                   {"Album", "Album of " + title}}});
    }
};

}  // namespace sonvara::test
