#include "platform/linux/system/QtApplication.h"

#include <QRasterWindow>
#include <QTimer>
#include <QWidget>
#include <utility>

namespace sonvara {

namespace {
constexpr const char* withoutSharedMemory = "QT_XCB_NO_MITSHM";
}

QtApplication::SharedMemoryBan::SharedMemoryBan()
{
    qputenv(withoutSharedMemory, "1");
}

QtApplication::QtApplication(const char* programName)
    : programName_(programName),
      arguments_{programName_.data(), nullptr},
      application_(argumentCount_, arguments_.data()),
      signals_([this] { terminate(); })
{
    displayCheck_.reset();
    qunsetenv(withoutSharedMemory);  // Qt has read it, and the tools that we start need not see it
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setApplicationName("Sonvara");  // no display name, which Qt would append to windows' titles
    QApplication::setDesktopFileName(SONVARA_IDENTIFIER);
    if (isLauncherWaiting_ && QApplication::platformName() == "xcb") endLaunchFeedback();
}

// A window that no window manager knows, outside the screen, and only for a moment.
void QtApplication::endLaunchFeedback()
{
    QRasterWindow window;
    window.setFlags(Qt::BypassWindowManagerHint | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    window.setGeometry(-1, -1, 1, 1);
    window.show();
}

void QtApplication::setDelegate(std::weak_ptr<ApplicationDelegate> delegate)
{
    delegate_ = std::move(delegate);
}

int QtApplication::run()
{
    QTimer::singleShot(0, &application_, [this] { launch(); });
    return QApplication::exec();
}

void QtApplication::launch()
{
    hasLaunched_ = true;
    if (const auto delegate = delegate_.lock()) delegate->applicationDidFinishLaunching();
    if (std::exchange(isReopenDue_, false)) reopen();
}

void QtApplication::reopen()
{
    isReopenDue_ = !hasLaunched_;
    if (isReopenDue_) return;
    if (const auto delegate = delegate_.lock()) delegate->applicationDidReopen();
}

void QtApplication::activateIgnoringOtherApps()
{
    for (auto* const window : QApplication::topLevelWidgets()) {
        if (!window->isVisible()) continue;
        window->raise();
        window->activateWindow();
    }
}

// Posted, for a request that comes before the event loop counts too. Not `quit`, which a window may refuse.
void QtApplication::terminate()
{
    QMetaObject::invokeMethod(&application_, [] { QApplication::exit(0); }, Qt::QueuedConnection);
}

}  // namespace sonvara
