// The application object of Qt.
#pragma once

#include "platform/linux/system/DisplayCheck.h"
#include "platform/linux/system/TerminationSignals.h"
#include "ports/Application.h"

#include <QApplication>
#include <array>
#include <memory>
#include <optional>
#include <string>

namespace sonvara {

/// To be made before any other object of Qt that needs a screen; without a display the process ends
/// there (see DisplayCheck). The program takes no command line: nothing of it reaches Qt. Closing the
/// last window does not end the program. The signals that ask for its end act like `terminate`.
class QtApplication final : public Application {
public:
    explicit QtApplication(const char* programName);

    void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) override;
    int run() override;
    void activateIgnoringOtherApps() override;
    void terminate() override;

    /// Main thread: the user asks for the application although it runs. The delegate hears of it,
    /// but of the launch first.
    void reopen();

private:
    /// Has Qt hand its pictures to the display over their connection. In shared memory they would travel as
    /// descriptors, and when the process has none left, Qt waits for them for ever.
    struct SharedMemoryBan {
        SharedMemoryBan();
    };

    void launch();
    /// Tells the launcher on X11 that the program runs, as Qt does with the first window that it shows: most starts
    /// show none, and the pointer would look busy for a while.
    static void endLaunchFeedback();

    SharedMemoryBan sharedMemoryBan_;
    bool isLauncherWaiting_ = qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID");  // before Qt takes it
    std::string programName_;  // Qt keeps references to these three
    std::array<char*, 2> arguments_;
    int argumentCount_ = 1;
    std::optional<DisplayCheck> displayCheck_{std::in_place};  // until Qt has found its display
    QApplication application_;
    TerminationSignals signals_;
    std::weak_ptr<ApplicationDelegate> delegate_;
    bool hasLaunched_ = false;
    bool isReopenDue_ = false;
};

}  // namespace sonvara
