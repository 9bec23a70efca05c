#include "platform/linux/tray/XEmbedIcon.h"

#include "platform/linux/tray/TrayMenuView.h"

#include <QCursor>
#include <QGuiApplication>

namespace sonvara {

XEmbedIcon::XEmbedIcon(QtStatusMenu* menu)
{
    icon_.setToolTip(QGuiApplication::applicationDisplayName());
    if (menu == nullptr) return;
    view_ = std::make_unique<TrayMenuView>(*menu);
    icon_.setContextMenu(&view_->widget());  // for the right button; the left one opens it, too
    QObject::connect(&icon_, &QSystemTrayIcon::activated, &icon_,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) view_->popUp(QCursor::pos());
                     });
}

XEmbedIcon::~XEmbedIcon()
{
    icon_.setContextMenu(nullptr);
}

void XEmbedIcon::setIcon(const QIcon& icon)
{
    icon_.setIcon(icon);
    icon_.show();
}

}  // namespace sonvara
