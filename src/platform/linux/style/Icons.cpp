#include "platform/linux/style/Icons.h"

#include "platform/linux/style/DrawingPainter.h"
#include "platform/linux/style/QtImageRenderer.h"

#include <QIconEngine>
#include <QPixmap>

#include <utility>

namespace sonvara {

namespace {

class ScalableEngine final : public QIconEngine {
public:
    explicit ScalableEngine(Drawing drawing) : drawing_(std::move(drawing)) {}

    // A window's icon is never greyed out, so mode and state do not matter.
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override
    {
        paintDrawing(*painter, drawing_, rect, applicationIconColors());
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override
    {
        return QPixmap::fromImage(rasterize(drawing_, size, applicationIconColors()));
    }
    [[nodiscard]] QIconEngine* clone() const override { return new ScalableEngine(drawing_); }

private:
    Drawing drawing_;
};

}  // namespace

RoleColors applicationIconColors()
{
    const QColor ground(0x1E, 0x20, 0x26);
    auto colors = RoleColors::on(ground, Qt::white);
    colors.label = ground;
    return colors;
}

QIcon applicationIcon(const Drawing& drawing)
{
    return QIcon(new ScalableEngine(drawing));
}

}  // namespace sonvara
