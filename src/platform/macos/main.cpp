// The program on macOS: one implementation of each port.
#include "app/SonvaraApp.h"
#include "platform/Platform.h"
#include "platform/keeper/PatientVoice.h"
#include "platform/keeper/ScriptVolumePrograms.h"
#include "platform/keeper/VolumeKeeper.h"
#include "platform/macos/AppleScriptRunner.h"
#include "platform/macos/AppleSpeechSynthesizer.h"
#include "platform/macos/CocoaApplication.h"
#include "platform/macos/CocoaImage.h"
#include "platform/macos/CocoaPasteboard.h"
#include "platform/macos/CocoaStatusBar.h"
#include "platform/macos/CocoaUserDefaults.h"
#include "platform/macos/CocoaWindows.h"
#include "platform/macos/DispatchGlobalQueue.h"
#include "platform/macos/DispatchMainQueue.h"
#include "platform/macos/DistributedNotificationCenter.h"
#include "platform/macos/ServiceLoginItem.h"
#include "platform/macos/SupportFolder.h"
#include "platform/macos/UnifiedLog.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixEnvironment.h"
#include "platform/posix/PosixFileManager.h"
#include "platform/posix/PosixNoteStore.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/ProcessSetup.h"

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
