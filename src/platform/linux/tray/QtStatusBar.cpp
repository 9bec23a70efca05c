#include "platform/linux/tray/QtStatusBar.h"

#include "platform/linux/tray/QtStatusItem.h"
#include "platform/linux/tray/QtStatusMenu.h"

namespace sonvara {

std::unique_ptr<StatusItem> QtStatusBar::makeSquareItem()
{
    if (!surroundings_) {
        auto& host = surroundings_.emplace(wait_).host;
        QObject::connect(&host, &TrayHostWatcher::hostMissing, &host, trayMissing_);
    }
    return std::make_unique<QtStatusItem>(surroundings_->host, surroundings_->colors);
}

std::unique_ptr<StatusMenu> QtStatusBar::makeMenu()
{
    return std::make_unique<QtStatusMenu>();
}

}  // namespace sonvara
