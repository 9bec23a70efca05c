#include "platform/linux/style/Icons.h"

#include "platform/linux/style/SymbolIcons.h"

#include <QIconEngine>
#include <QPixmap>

namespace sonvara {

namespace {

class ScalableEngine final : public QIconEngine {
public:
    ScalableEngine(IconContent content, const RoleColors& colors)
        : content_(std::move(content)),
          colors_(colors)
    {}

    // An item in the tray is never greyed out, so mode and state do not matter.
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override
    {
        paintIcon(*painter, content_, rect, colors_);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override
    {
        return QPixmap::fromImage(rasterize(content_, std::min(size.width(), size.height()), colors_));
    }
    [[nodiscard]] QIconEngine* clone() const override { return new ScalableEngine(content_, colors_); }

private:
    IconContent content_;
    RoleColors colors_;
};

}  // namespace

void paintIcon(QPainter& painter, const IconContent& content, const QRectF& target, const RoleColors& colors)
{
    if (const auto* image = std::get_if<std::shared_ptr<const QtImage>>(&content)) {
        paintDrawing(painter, (*image)->drawing(), target, colors);
    } else if (const auto* symbol = std::get_if<Symbol>(&content)) {
        paintSymbol(painter, symbol->name, target, colors.label);
    }
}

QImage rasterize(const IconContent& content, int side, const RoleColors& colors)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintIcon(painter, content, QRectF(0, 0, side, side), colors);
    return image;
}

QIcon scalableIcon(const IconContent& content, const RoleColors& colors)
{
    return QIcon(new ScalableEngine(content, colors));
}

RoleColors applicationIconColors()
{
    const QColor ground(0x1E, 0x20, 0x26);
    auto colors = RoleColors::on(ground, Qt::white);
    colors.label = ground;
    return colors;
}

QIcon applicationIcon(const Drawing& drawing)
{
    return scalableIcon(std::make_shared<const QtImage>(drawing), applicationIconColors());
}

}  // namespace sonvara
