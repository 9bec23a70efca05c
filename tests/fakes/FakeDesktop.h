// A whole desktop of fakes around the real core.
#pragma once

#include "fakes/FakeFace.h"
#include "fakes/FakePlayers.h"
#include "fakes/FakeProcesses.h"
#include "fakes/FakeSystem.h"
#include "fakes/FakeVoice.h"
#include "fakes/VirtualTime.h"
#include "log/DJLog.h"
#include "ports/Platform.h"

#include <memory>

namespace sonvara::test {

/// All ports, and the activity log. Objects of the core are made by the test and must go before it.
struct FakeDesktop {
    VirtualTime time;
    FakePlayers players{time};
    FakeNotificationCenter notifications{time};
    FakeVoice voice{time};
    FakeUserDefaults defaults;
    FakeSystemLog systemLog;
    FakeEnvironment environment;
    FakeFileManager files{time};
    FakeLauncher launcher{time};
    FakeStatusBar statusBar;
    FakeImageRenderer images{time};
    FakeWindows windows;
    FakePasteboard pasteboard;
    FakeLoginItem loginItem;
    FakeApplication application;
    std::unique_ptr<DJLog> log = DJLog::makeShared(time, time);
    Platform platform{
        .application = application,
        .mainQueue = time,
        .globalQueue = time,
        .clock = time,
        .environment = environment,
        .fileManager = files,
        .processLauncher = launcher,
        .scriptRunner = players,
        .notificationCenter = notifications,
        .speechSynthesizer = voice,
        .userDefaults = defaults,
        .systemLog = systemLog,
        .statusBar = statusBar,
        .imageRenderer = images,
        .windows = windows,
        .pasteboard = pasteboard,
        .loginItem = loginItem,
    };

    FakeDesktop();
    FakeDesktop(const FakeDesktop&) = delete;
    FakeDesktop& operator=(const FakeDesktop&) = delete;
    ~FakeDesktop();
};

}  // namespace sonvara::test
