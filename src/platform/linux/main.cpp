// The program on the Linux desktop: makes the ports, runs the application, and ends in time.
#include "app/AppDelegate.h"
#include "app/SonvaraApp.h"
#include "platform/linux/players/MprisPlayers.h"
#include "platform/linux/speech/SpeechDispatcherSynthesizer.h"
#include "platform/linux/style/Icons.h"
#include "platform/linux/style/QtImageRenderer.h"
#include "platform/linux/system/AutostartLoginItem.h"
#include "platform/linux/system/IniUserDefaults.h"
#include "platform/linux/system/JournalLog.h"
#include "platform/linux/system/LocaleDigits.h"
#include "platform/linux/system/QtApplication.h"
#include "platform/linux/system/QtMainQueue.h"
#include "platform/linux/system/QtPasteboard.h"
#include "platform/linux/system/SingleInstance.h"
#include "platform/linux/system/WorkerPool.h"
#include "platform/linux/tray/QtStatusBar.h"
#include "platform/linux/windows/QtWindows.h"
#include "platform/posix/PosixNoteStore.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/PosixSystem.h"
#include "platform/posix/ProcessSetup.h"
#include "platform/posix/VolumeGuard.h"
#include "ports/Platform.h"
#include "ui/AppIcon.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <malloc.h>
#include <optional>
#include <string>
#include <unistd.h>

namespace sonvara {

namespace {

using namespace std::chrono_literals;

// A program should be gone within a second. The voice may take half of it, and meanwhile the players answer.
constexpr auto playersLimit = 700ms;
constexpr auto filesLimit = 800ms;
constexpr auto workersLimit = 950ms;
// A worker that reads a volume: the main thread and then the player are asked.
constexpr auto readLimit = 1000ms;

// Where the program keeps what must outlive it and is no setting.
std::string stateFolder(const Environment& environment)
{
    const auto variables = environment.variables();
    const auto valueOf = [&variables](const char* name) {
        const auto found = variables.find(name);
        return found == variables.end() ? std::string() : found->second;
    };
    const auto given = valueOf("XDG_STATE_HOME");
    return (given.starts_with('/') ? given : valueOf("HOME") + "/.local/state") + "/sonvara";
}

// One implementation of each port, in the order in which they need one another.
struct LinuxPorts {
    LinuxPorts(QtApplication& app, SystemLog& systemLog, const QDBusConnection& bus)
        : application(app),
          log(systemLog),
          players(bus, log),
          statusBar([this] { standInForTray(); })
    {
        players.reportTo(volume.players());
    }

    Platform platform()
    {
        return {
            .application = application,
            .mainQueue = mainQueue,
            .globalQueue = workers,
            .clock = clock,
            .environment = environment,
            .fileManager = fileManager,
            .processLauncher = processLauncher,
            .scriptRunner = volume.scriptRunner(),
            .notificationCenter = players.notificationCenter(),
            .speechSynthesizer = volume.voice(),
            .userDefaults = userDefaults,
            .systemLog = log,
            .statusBar = statusBar,
            .imageRenderer = imageRenderer,
            .windows = windows,
            .pasteboard = pasteboard,
            .loginItem = loginItem,
        };
    }

    /// Ends what is under way. Returns whether nothing uses the ports any more.
    bool end()
    {
        const auto begin = std::chrono::steady_clock::now();
        const auto left = [begin](std::chrono::milliseconds limit) {
            const auto passed = std::chrono::steady_clock::now() - begin;
            return std::max(std::chrono::ceil<std::chrono::milliseconds>(limit - passed), 0ms);
        };
        processLauncher.terminateAll();
        volume.end();
        speech.reset();  // else the line that is being spoken would outlive us
        QTimer patience;
        patience.setSingleShot(true);
        patience.start(left(playersLimit));
        while (!volume.players().isSettled() && patience.isActive())
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                            QEventLoop::WaitForMoreEvents);
        const bool areNotesWritten = volume.finish(left(filesLimit));
        const bool areSettingsWritten = userDefaults.flush(left(filesLimit));
        const bool areWorkersGone = workers.shutDown(left(workersLimit));
        return areNotesWritten && areSettingsWritten && areWorkersGone;
    }

    // Without a tray the settings are the only face there is. They come up by themselves once and for all,
    // for nobody wants a window at every login; whoever starts the program again while it runs sees them
    // again.
    void standInForTray()
    {
        Logger(log, "Tray")
            .error({{"This desktop shows no tray: start the program again to come to its settings"}});
        workers.post(QualityOfService::utility, [this] {
            if (settingsShown.load()) return;
            settingsShown.save("The settings have come up once on a desktop without a tray.\n");
            mainQueue.post([this] { application.reopen(); });
        });
    }

    QtApplication& application;
    SystemLog& log;
    PosixClock clock{zeroDigit()};
    PosixEnvironment environment;
    PosixFileManager fileManager;
    PosixProcessLauncher processLauncher;
    QtMainQueue mainQueue;
    WorkerPool workers;
    IniUserDefaults userDefaults{IniUserDefaults::standardPath(), log};
    MprisPlayers players;
    std::optional<SpeechDispatcherSynthesizer> speech{std::in_place, mainQueue, log, environment};
    PosixNoteStore loweredPlayers{stateFolder(environment) + "/lowered-players"};
    VolumeGuard volume{{
        .players = players.volumes(),
        .otherScripts = players.scriptRunner(),
        .voice = *speech,
        .mainQueue = mainQueue,
        .workers = workers,
        .clock = clock,
        .notes = loweredPlayers,
        .readLimit = readLimit,
    }};
    PosixNoteStore settingsShown{stateFolder(environment) + "/settings-shown"};
    QtStatusBar statusBar;
    QtImageRenderer imageRenderer;
    QtWindows windows;
    QtPasteboard pasteboard;
    AutostartLoginItem loginItem{AutostartLoginItem::thisProgram(), SONVARA_IDENTIFIER, workers};
};

// The allocator's own choices are for programs that work all the time.
void setUpMemory()
{
    // Else each thread would have a store of memory of its own, and keep what it no longer uses there.
    ::mallopt(M_ARENA_MAX, 1);
    // What a start and a message of an icon have used goes back to the system; a change of tracks uses less than this.
    ::mallopt(M_TRIM_THRESHOLD, 64 * 1024);
    ::mallopt(M_TOP_PAD, 16 * 1024);
}

}  // namespace

}  // namespace sonvara

int main(int /*argc*/, char** argv)
{
    using namespace sonvara;
    setUpMemory();
    setUpProcess();
    JournalLog log;
    QtApplication application(argv[0]);
    const auto bus = QDBusConnection::sessionBus();
    SingleInstance instance(bus, [&application] { application.reopen(); });
    // One that does nothing is not the DJ, and must not keep another from being it.
    if (!AppDelegate::isInert(PosixEnvironment()) && !instance.claim()) return EXIT_SUCCESS;

    QApplication::setWindowIcon(applicationIcon(appIcon(32)));
    LinuxPorts ports(application, log, bus);
    auto platform = ports.platform();
    const int status = SonvaraApp::main(platform);
    instance.release();  // first of all: the end takes a while, and who starts meanwhile is to be the DJ
    // A worker that is still busy uses the ports, so they must stay until the process has gone.
    if (!ports.end()) ::_exit(status);
    return status;
}
