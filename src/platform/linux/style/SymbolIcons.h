// The symbols that the interface names, as our own vector shapes.
#pragma once

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QRectF>

#include <string>

namespace sonvara {

/// The shape of a symbol in the unit square, y downwards, to be filled by the odd-even rule; empty for
/// a name that is not known. Any thread.
[[nodiscard]] QPainterPath symbolPath(const std::string& name);

/// Fills the symbol's shape in the middle of `target`.
void paintSymbol(QPainter& painter, const std::string& name, const QRectF& target, const QColor& color);

}  // namespace sonvara
