// Paints the core's vector pictures.
#pragma once

#include "platform/linux/style/StylePalette.h"
#include "ports/Image.h"

#include <QPainter>
#include <QRectF>

namespace sonvara {

/// Paints `drawing` as large as fits into the middle of `target`. A template takes `colors.label` for
/// every shape, with the shape's own alpha, before a halo of `colors.halo`. Any thread that may use `painter`.
void paintDrawing(QPainter& painter, const Drawing& drawing, const QRectF& target, const RoleColors& colors);

}  // namespace sonvara
