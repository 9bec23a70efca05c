// The tray item, in whatever kind of tray the desktop has at the moment.
#pragma once

#include "platform/linux/tray/IconCache.h"
#include "platform/linux/tray/StatusNotifierItem.h"
#include "ports/StatusBar.h"

#include <QIcon>
#include <QObject>

#include <memory>

namespace sonvara {

class PanelColors;
class QtStatusMenu;
class TrayHostWatcher;
class XEmbedIcon;

/// Makes its item anew whenever the tray changes. Main thread.
class QtStatusItem final : public QObject, public StatusItem, private StatusButton {
    Q_OBJECT

public:
    /// Both outlive the item.
    QtStatusItem(TrayHostWatcher& host, PanelColors& colors);
    ~QtStatusItem() override;

    [[nodiscard]] StatusButton* button() override { return this; }
    void setVisible(bool visible) override;
    void setMenu(StatusMenu& menu) override;

private:
    void setImage(std::shared_ptr<const Image> image) override;
    void setSymbol(const Symbol& symbol) override;
    void setContent(IconContent content);
    void rebuild();
    void showContent();

    TrayHostWatcher& host_;
    PanelColors& colors_;
    bool isVisible_ = true;
    QtStatusMenu* menu_ = nullptr;
    IconContent content_;
    IconCache<NotifierImageList> hostPictures_;  // of either kind of tray
    IconCache<QIcon> icons_;
    std::unique_ptr<StatusNotifierItem> notifier_;
    std::unique_ptr<XEmbedIcon> embedded_;
};

}  // namespace sonvara
