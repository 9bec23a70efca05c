#include "platform/linux/tray/QtStatusItem.h"

#include "platform/linux/tray/PanelColors.h"
#include "platform/linux/tray/QtStatusMenu.h"
#include "platform/linux/tray/TrayHostWatcher.h"
#include "platform/linux/tray/XEmbedIcon.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QTimer>

namespace sonvara {

namespace {

NotifierImageList notifierImages(QList<QImage> pictures)
{
    NotifierImageList images;
    images.reserve(pictures.size());
    for (auto& picture : pictures) images.append(NotifierImage::of(std::move(picture)));
    return images;
}

QIcon iconOf(const QList<QImage>& pictures)
{
    QIcon icon;
    for (const auto& picture : pictures) icon.addPixmap(QPixmap::fromImage(picture));
    return icon;
}

}  // namespace

QtStatusItem::QtStatusItem(TrayHostWatcher& host, PanelColors& colors)
    : host_(host),
      colors_(colors),
      hostPictures_(notifierImages),
      icons_(iconOf)
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
            [this] { return hostPictures_.get(content_, colors_.colors()); }, menu_);
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
    if (embedded_) embedded_->setIcon(icons_.get(content_, colors_.colors()));
}

}  // namespace sonvara
