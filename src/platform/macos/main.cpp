// The program on macOS: one implementation of each port.
#include "app/SonvaraApp.h"
#include "platform/macos/players/AppleScriptComponent.h"
#include "platform/macos/players/DistributedNotificationCenter.h"
#include "platform/macos/players/PlayingWatch.h"
#include "platform/macos/players/ScriptLanes.h"
#include "platform/macos/players/ScriptVolumes.h"
#include "platform/macos/speech/AppleSpeechSynthesizer.h"
#include "platform/macos/system/CocoaApplication.h"
#include "platform/macos/system/CocoaPasteboard.h"
#include "platform/macos/system/CocoaUserDefaults.h"
#include "platform/macos/system/DispatchGlobalQueue.h"
#include "platform/macos/system/DispatchMainQueue.h"
#include "platform/macos/system/DispatchSerialQueue.h"
#include "platform/macos/system/LocaleDigits.h"
#include "platform/macos/system/ServiceLoginItem.h"
#include "platform/macos/system/UnifiedLog.h"
#include "platform/macos/system/Wakefulness.h"
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
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>
#include <utility>

using namespace sonvara;
using namespace std::chrono_literals;

namespace {

// A worker that reads a volume: two scripts, one of which gives the player two seconds.
constexpr auto readLimit = 2500ms;

ScriptLanes::Post makeThread(const std::string& player)
{
    const auto queue = std::make_shared<DispatchSerialQueue>(SONVARA_IDENTIFIER ".scripts." + player);
    return [queue](Task task) { queue->post(std::move(task)); };
}

}  // namespace

int main()
{
    setUpProcess();
    CocoaApplication application;
    DispatchMainQueue mainQueue;
    DispatchGlobalQueue globalQueue;
    PosixClock clock(zeroDigit());
    PosixEnvironment environment;
    PosixFileManager fileManager;
    PosixProcessLauncher processLauncher;
    AppleScriptComponent component;
    ScriptLanes scripts(component, makeThread);
    ScriptVolumes players(scripts, mainQueue);
    Wakefulness wakefulness;
    PlayingWatch polls(scripts, [&wakefulness](bool isAnyPlaying) { wakefulness.hold(isAnyPlaying); });
    PosixNoteStore loweredPlayers(supportFile("lowered-players"));
    DistributedNotificationCenter notificationCenter;
    AppleSpeechSynthesizer speech(globalQueue, mainQueue);
    VolumeGuard volume({
        .players = players,
        .otherScripts = polls,
        .voice = speech,
        .mainQueue = mainQueue,
        .workers = globalQueue,
        .clock = clock,
        .notes = loweredPlayers,
        .readLimit = readLimit,
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
        (void)scripts.finish(500ms);
        (void)volume.finish(200ms);
        userDefaults.synchronize();
        // Workers that are still busy use all of this, so nothing of it may be destroyed.
        ::_exit(EXIT_SUCCESS);
    });
    return SonvaraApp::main(platform);
}
