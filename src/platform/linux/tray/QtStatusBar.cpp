#include "platform/linux/tray/QtStatusBar.h"

#include "platform/linux/tray/QtStatusItem.h"
#include "platform/linux/tray/QtStatusMenu.h"

namespace sonvara {

QtStatusBar::QtStatusBar(std::function<void()> trayMissing, std::chrono::milliseconds wait) : host_(wait)
{
    QObject::connect(&host_, &TrayHostWatcher::hostMissing, &host_, std::move(trayMissing));
}

std::unique_ptr<StatusItem> QtStatusBar::makeSquareItem()
{
    return std::make_unique<QtStatusItem>(host_, colors_);
}

std::unique_ptr<StatusMenu> QtStatusBar::makeMenu()
{
    return std::make_unique<QtStatusMenu>();
}

}  // namespace sonvara
