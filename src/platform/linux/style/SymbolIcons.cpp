#include "platform/linux/style/SymbolIcons.h"

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
    head.addEllipse(QPointF(0, 0), 19, 14.5);
    const auto tilted = QTransform().translate(36, 80).rotate(-20).map(head);
    QPainterPath flag(QPointF(53, 6));
    flag.cubicTo(55, 24, 82, 26, 74, 56);
    flag.cubicTo(73, 42, 64, 36, 50, 34);
    flag.closeSubpath();
    return tilted.united(stroked(line(51.5, 10, 51.5, 76), 8.5)).united(flag);
}

QPainterPath infoCircle()
{
    const auto letter = circle(50, 30, 6.2).united(stroked(line(50, 47, 50, 71), 9.5));
    return circle(50, 50, 46).subtracted(circle(50, 50, 37.5)).united(letter);
}

QPainterPath checkmarkCircle()
{
    QPainterPath check(QPointF(29, 52));
    check.lineTo(44, 67);
    check.lineTo(71, 34);
    return circle(50, 50, 46).subtracted(stroked(check, 9.5));
}

QPainterPath exclamationTriangle()
{
    QPainterPath outline(QPointF(50, 13));
    outline.lineTo(90, 84);
    outline.lineTo(10, 84);
    outline.closeSubpath();
    const auto triangle = outline.united(stroked(outline, 14));
    const auto mark = stroked(line(50, 36, 50, 58), 9.5).united(circle(50, 73.5, 6));
    return triangle.subtracted(mark);
}

/// In a square of 100 units: Qt joins shapes with an error that would show in a unit square.
QPainterPath largePath(const std::string& name)
{
    if (name == "music.note") return musicNote();
    if (name == "info.circle") return infoCircle();
    if (name == "checkmark.circle.fill") return checkmarkCircle();
    if (name == "exclamationmark.triangle.fill") return exclamationTriangle();
    return {};
}

}  // namespace

QPainterPath symbolPath(const std::string& name)
{
    return QTransform::fromScale(0.01, 0.01).map(largePath(name));
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
