// A whole desktop of fakes around the real core.
#pragma once

#include "fakes/FakeFace.h"
#include "fakes/FakePlayers.h"
#include "fakes/FakeProcesses.h"
#include "fakes/FakeSystem.h"
#include "fakes/FakeVoice.h"
#include "fakes/VirtualTime.h"
#include "log/DJLog.h"  // for the tests
#include "ports/Platform.h"

namespace sonvara::test {

/// All ports; the activity log runs on them. Objects of the core are made by the test and must go before it.
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
    FakeStatusBar statusBar{time};
    FakeImageRenderer images{time};
    FakeWindows windows;
    FakePasteboard pasteboard;
    FakeLoginItem loginItem;
    FakeApplication application;
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
