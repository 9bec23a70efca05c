#include "platform/linux/style/TrayPicture.h"

#include "platform/linux/style/SymbolIcons.h"

#include <QIconEngine>
#include <QPixmap>

namespace sonvara {

namespace {

class PictureEngine final : public QIconEngine {
public:
    PictureEngine(TrayPicture picture, const RoleColors& colors)
        : picture_(std::move(picture)),
          colors_(colors)
    {}

    // An item in the tray is never greyed out, so mode and state do not matter.
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override
    {
        paintPicture(*painter, picture_, rect, colors_);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override
    {
        return QPixmap::fromImage(rasterize(picture_, std::min(size.width(), size.height()), colors_));
    }
    [[nodiscard]] QIconEngine* clone() const override { return new PictureEngine(picture_, colors_); }

private:
    TrayPicture picture_;
    RoleColors colors_;
};

}  // namespace

void paintPicture(QPainter& painter, const TrayPicture& picture, const QRectF& target,
                  const RoleColors& colors)
{
    if (const auto* image = std::get_if<std::shared_ptr<const QtImage>>(&picture)) {
        paintDrawing(painter, (*image)->drawing(), target, colors);
    } else if (const auto* symbol = std::get_if<Symbol>(&picture)) {
        paintSymbol(painter, symbol->name, target, colors.label);
    }
}

QImage rasterize(const TrayPicture& picture, int side, const RoleColors& colors)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintPicture(painter, picture, QRectF(0, 0, side, side), colors);
    return image;
}

QIcon pictureIcon(const TrayPicture& picture, const RoleColors& colors)
{
    return QIcon(new PictureEngine(picture, colors));
}

}  // namespace sonvara
