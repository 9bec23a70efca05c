#include "platform/linux/tray/QtStatusItem.h"

#include "platform/linux/tray/PanelColors.h"
#include "platform/linux/tray/QtStatusMenu.h"
#include "platform/linux/tray/StatusNotifierItem.h"
#include "platform/linux/tray/TrayHostWatcher.h"
#include "platform/linux/tray/XEmbedIcon.h"

#include <QGuiApplication>
#include <QTimer>

#include <array>

namespace sonvara {

namespace {

/// In pixels: the usual sizes of panels (16, 18, 22, 24 and 32) at one, one and a half, two and three times.
constexpr std::array pictureSizes{16, 18, 22, 24, 27, 32, 33, 36, 44, 48, 54, 64, 66, 72, 96};

NotifierImageList notifierImages(const IconContent& content, const RoleColors& colors)
{
    NotifierImageList images;
    for (const int side : pictureSizes) images.append(NotifierImage::of(rasterize(content, side, colors)));
    return images;
}

}  // namespace

QtStatusItem::QtStatusItem(TrayHostWatcher& host, PanelColors& colors) : host_(host), colors_(colors)
{
    connect(&host_, &TrayHostWatcher::notifierHostChanged, this, &QtStatusItem::rebuild);
    connect(&colors_, &PanelColors::changed, this, &QtStatusItem::showContent);
    // With the next turn of the event loop, when content and menu are there: a host fetches both at once.
    QTimer::singleShot(0, this, &QtStatusItem::rebuild);
}

QtStatusItem::~QtStatusItem() = default;

void QtStatusItem::setVisible(bool visible)
{
    if (isVisible_ == visible) return;
    isVisible_ = visible;
    rebuild();
}

void QtStatusItem::setMenu(StatusMenu& menu)
{
    menu_ = &dynamic_cast<QtStatusMenu&>(menu);
    if (notifier_ || embedded_) rebuild();
}

void QtStatusItem::setImage(std::shared_ptr<const Image> image)
{
    setContent(std::dynamic_pointer_cast<const QtImage>(std::move(image)));
}

void QtStatusItem::setSymbol(const Symbol& symbol)
{
    setContent(symbol);
}

void QtStatusItem::setContent(IconContent content)
{
    if (content == content_) return;  // said again with every poll; the host would fetch it each time
    content_ = std::move(content);
    showContent();
}

void QtStatusItem::rebuild()
{
    notifier_.reset();
    embedded_.reset();
    if (!isVisible_ || !host_.hasNotifierHost()) return;
    if (*host_.hasNotifierHost()) {
        notifier_ = std::make_unique<StatusNotifierItem>(
            [this] { return notifierImages(content_, colors_.colors()); }, menu_);
        connect(notifier_.get(), &StatusNotifierItem::refused, &host_, &TrayHostWatcher::refuse,
                Qt::QueuedConnection);  // it drops the item
    } else if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        embedded_ =
            std::make_unique<XEmbedIcon>(menu_);  // elsewhere Qt only complains that there is no such tray
    }
    showContent();
}

void QtStatusItem::showContent()
{
    if (notifier_) notifier_->updateIcon();
    if (embedded_) embedded_->setContent(content_, colors_.colors());
}

}  // namespace sonvara
