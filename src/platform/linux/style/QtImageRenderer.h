// Draws the core's vector pictures with QPainter.
#pragma once

#include "platform/linux/style/StylePalette.h"
#include "ports/Image.h"

#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSize>

#include <memory>

namespace sonvara {

/// A picture kept as its shapes: the tray shows it at sizes and on colours that are known only later.
class QtImage final : public Image {
public:
    explicit QtImage(Drawing drawing) : drawing_(std::move(drawing)) {}
    [[nodiscard]] const Drawing& drawing() const { return drawing_; }

private:
    Drawing drawing_;
};

/// Paints `drawing` as large as fits into the middle of `target`. A template takes `colors.label` for
/// every shape, with the shape's own alpha, before a halo of `colors.halo`. Any thread that may use `painter`.
void paintDrawing(QPainter& painter, const Drawing& drawing, const QRectF& target, const RoleColors& colors);

/// `drawing` on a transparent ground of `size` pixels. Any thread.
[[nodiscard]] QImage rasterize(const Drawing& drawing, QSize size, const RoleColors& colors);

class QtImageRenderer final : public ImageRenderer {
public:
    /// Nothing when the drawing has no area.
    [[nodiscard]] std::shared_ptr<const Image> render(const Drawing& drawing) override;
};

}  // namespace sonvara
