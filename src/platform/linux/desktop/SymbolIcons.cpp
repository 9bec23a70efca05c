#include "platform/linux/desktop/SymbolIcons.h"

#include <QPen>
#include <QTransform>

#include <algorithm>

namespace sonvara {

namespace {

/// What a round pen of `width` covers along `line`.
QPainterPath stroked(const QPainterPath& line, double width)
{
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return stroker.createStroke(line).simplified();
}

QPainterPath circle(double x, double y, double radius)
{
    QPainterPath path;
    path.addEllipse(QPointF(x, y), radius, radius);
    return path;
}

QPainterPath line(double x1, double y1, double x2, double y2)
{
    QPainterPath path(QPointF(x1, y1));
    path.lineTo(x2, y2);
    return path;
}

QPainterPath musicNote()
{
    QPainterPath head;
    head.addEllipse(QPointF(0, 0), 0.19, 0.145);
    const auto tilted = QTransform().translate(0.36, 0.80).rotate(-20).map(head);
    QPainterPath flag(QPointF(0.53, 0.06));
    flag.cubicTo(0.55, 0.24, 0.82, 0.26, 0.74, 0.56);
    flag.cubicTo(0.73, 0.42, 0.64, 0.36, 0.50, 0.34);
    flag.closeSubpath();
    return tilted.united(stroked(line(0.515, 0.10, 0.515, 0.76), 0.085)).united(flag);
}

QPainterPath infoCircle()
{
    const auto letter = circle(0.5, 0.30, 0.062).united(stroked(line(0.5, 0.47, 0.5, 0.71), 0.095));
    return circle(0.5, 0.5, 0.46).subtracted(circle(0.5, 0.5, 0.375)).united(letter);
}

QPainterPath checkmarkCircle()
{
    QPainterPath check(QPointF(0.29, 0.52));
    check.lineTo(0.44, 0.67);
    check.lineTo(0.71, 0.34);
    return circle(0.5, 0.5, 0.46).subtracted(stroked(check, 0.095));
}

QPainterPath exclamationTriangle()
{
    QPainterPath outline(QPointF(0.5, 0.13));
    outline.lineTo(0.90, 0.84);
    outline.lineTo(0.10, 0.84);
    outline.closeSubpath();
    const auto triangle = outline.united(stroked(outline, 0.14));
    const auto mark = stroked(line(0.5, 0.36, 0.5, 0.58), 0.095).united(circle(0.5, 0.735, 0.06));
    return triangle.subtracted(mark);
}

}  // namespace

QPainterPath symbolPath(const std::string& name)
{
    if (name == "music.note") return musicNote();
    if (name == "info.circle") return infoCircle();
    if (name == "checkmark.circle.fill") return checkmarkCircle();
    if (name == "exclamationmark.triangle.fill") return exclamationTriangle();
    return {};
}

void paintSymbol(QPainter& painter, const std::string& name, const QRectF& target, const QColor& color)
{
    const double side = std::min(target.width(), target.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(target.center() - QPointF(side / 2, side / 2));
    painter.scale(side, side);
    painter.fillPath(symbolPath(name), color);
    painter.restore();
}

}  // namespace sonvara
