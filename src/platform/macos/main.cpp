// The program on macOS: one implementation of each port.
#include "app/SonvaraApp.h"
#include "platform/macos/players/AppleScriptRunner.h"
#include "platform/macos/players/DistributedNotificationCenter.h"
#include "platform/macos/players/ScriptVolumes.h"
#include "platform/macos/speech/AppleSpeechSynthesizer.h"
#include "platform/macos/system/CocoaApplication.h"
#include "platform/macos/system/CocoaPasteboard.h"
#include "platform/macos/system/CocoaUserDefaults.h"
#include "platform/macos/system/DispatchGlobalQueue.h"
#include "platform/macos/system/DispatchMainQueue.h"
#include "platform/macos/system/ServiceLoginItem.h"
#include "platform/macos/system/UnifiedLog.h"
#include "platform/macos/windows/CocoaImage.h"
#include "platform/macos/windows/CocoaStatusBar.h"
#include "platform/macos/windows/CocoaWindows.h"
#include "platform/posix/PosixNoteStore.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/PosixSystem.h"
#include "platform/posix/ProcessSetup.h"
#include "platform/posix/VolumeGuard.h"
#include "ports/Platform.h"

#include <chrono>
#include <optional>

using namespace sonvara;

int main()
{
    setUpProcess();
    CocoaApplication application;
    DispatchMainQueue mainQueue;
    DispatchGlobalQueue globalQueue;
    PosixClock clock;
    PosixEnvironment environment;
    PosixFileManager fileManager;
    PosixProcessLauncher processLauncher;
    AppleScriptRunner scripts;
    ScriptVolumes players(scripts, globalQueue, mainQueue);
    PosixNoteStore loweredPlayers(supportFile("lowered-players"));
    DistributedNotificationCenter notificationCenter;
    AppleSpeechSynthesizer speech;
    VolumeGuard volume({
        .players = players,
        .otherScripts = scripts,
        .voice = speech,
        .mainQueue = mainQueue,
        .workers = globalQueue,
        .clock = clock,
        .notes = loweredPlayers,
        .readLimit = std::nullopt,  // a read may wait for the user's consent, for as long as that takes
    });
    players.reportTo(volume.players());
    CocoaUserDefaults userDefaults;
    UnifiedLog systemLog(SONVARA_IDENTIFIER);
    CocoaStatusBar statusBar;
    CocoaImageRenderer imageRenderer;
    CocoaWindows windows;
    CocoaPasteboard pasteboard;
    ServiceLoginItem loginItem;

    Platform platform{
        .application = application,
        .mainQueue = mainQueue,
        .globalQueue = globalQueue,
        .clock = clock,
        .environment = environment,
        .fileManager = fileManager,
        .processLauncher = processLauncher,
        .scriptRunner = volume.scriptRunner(),
        .notificationCenter = notificationCenter,
        .speechSynthesizer = volume.voice(),
        .userDefaults = userDefaults,
        .systemLog = systemLog,
        .statusBar = statusBar,
        .imageRenderer = imageRenderer,
        .windows = windows,
        .pasteboard = pasteboard,
        .loginItem = loginItem,
    };
    application.onWillTerminate([&] {
        processLauncher.terminateAll();
        volume.end();
        // What has not been done by then is put right by its note, at the next start.
        (void)players.finish(std::chrono::milliseconds(500));
        (void)volume.finish(std::chrono::milliseconds(200));
    });
    return SonvaraApp::main(platform);
}
