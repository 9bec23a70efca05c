// The program on macOS: one implementation of each port.
#include "app/SonvaraApp.h"
#include "platform/macos/players/AppleScriptRunner.h"
#include "platform/macos/players/DistributedNotificationCenter.h"
#include "platform/macos/speech/AppleSpeechSynthesizer.h"
#include "platform/macos/system/CocoaApplication.h"
#include "platform/macos/system/CocoaPasteboard.h"
#include "platform/macos/system/CocoaUserDefaults.h"
#include "platform/macos/system/DispatchGlobalQueue.h"
#include "platform/macos/system/DispatchMainQueue.h"
#include "platform/macos/system/ServiceLoginItem.h"
#include "platform/macos/system/SupportFolder.h"
#include "platform/macos/system/UnifiedLog.h"
#include "platform/macos/windows/CocoaImage.h"
#include "platform/macos/windows/CocoaStatusBar.h"
#include "platform/macos/windows/CocoaWindows.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixEnvironment.h"
#include "platform/posix/PosixFileManager.h"
#include "platform/posix/PosixNoteStore.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/ProcessSetup.h"
#include "ports/Platform.h"
#include "volume/PatientVoice.h"
#include "volume/ScriptVolumePrograms.h"
#include "volume/VolumeKeeper.h"

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
    ScriptVolumePrograms players(scripts);
    PosixNoteStore loweredPlayers(supportFile("lowered-players"));
    VolumeKeeper scriptRunner(scripts, players, loweredPlayers);
    DistributedNotificationCenter notificationCenter;
    AppleSpeechSynthesizer speech;
    PatientVoice voice(speech, globalQueue);
    CocoaUserDefaults userDefaults;
    UnifiedLog systemLog(SONVARA_IDENTIFIER);
    CocoaStatusBar statusBar;
    CocoaImageRenderer imageRenderer;
    CocoaWindows windows;
    CocoaPasteboard pasteboard;
    ServiceLoginItem loginItem;

    Platform platform{application,        mainQueue,     globalQueue,     clock,
                      environment,        fileManager,   processLauncher, scriptRunner,
                      notificationCenter, voice,         userDefaults,    systemLog,
                      statusBar,          imageRenderer, windows,         pasteboard,
                      loginItem};
    application.onWillTerminate([&] {
        processLauncher.terminateAll();
        scriptRunner.restoreAll();
    });
    return SonvaraApp::main(platform);
}
