// The tray item, in whatever kind of tray the desktop has at the moment.
#pragma once

#include "platform/linux/style/QtImageRenderer.h"
#include "platform/linux/tray/StatusNotifierItem.h"
#include "ports/StatusBar.h"

#include <QImage>
#include <QList>
#include <QObject>

#include <memory>
#include <variant>

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
    /// An image of ours (not null), a symbol, or nothing.
    using Content = std::variant<std::monostate, std::shared_ptr<const QtImage>, Symbol>;

    void setImage(std::shared_ptr<const Image> image) override;
    void setSymbol(const Symbol& symbol) override;
    void setContent(Content content);
    void rebuild();
    void showContent();
    [[nodiscard]] QList<QImage> pictures() const;

    TrayHostWatcher& host_;
    PanelColors& colors_;
    bool isVisible_ = true;
    QtStatusMenu* menu_ = nullptr;
    Content content_;
    std::unique_ptr<StatusNotifierItem> notifier_;
    std::unique_ptr<XEmbedIcon> embedded_;
};

}  // namespace sonvara
