// Makes of the core's vector pictures what a tray can show.
#pragma once

#include "platform/linux/style/Stencil.h"
#include "platform/linux/style/StylePalette.h"
#include "ports/Image.h"

#include <QImage>
#include <QList>
#include <QSize>

#include <array>
#include <memory>
#include <vector>

namespace sonvara {

/// A picture drawn at all sizes that a tray may ask for, ready for the colours, which may change.
class QtImage final : public Image {
public:
    /// In pixels: the usual sizes of panels (16, 22, 24 and 32) at one, one and a half, two and three times. Those between 48 and
    /// 96 are left out: most of the memory, asked for least, and hardly to be told from the largest scaled down.
    static constexpr std::array sides{16, 22, 24, 32, 33, 36, 44, 48, 96};

    /// Draws it now. Any thread.
    explicit QtImage(const Drawing& drawing);
    explicit QtImage(const Symbol& symbol);

    /// One square picture for each of `sides`. Any thread.
    [[nodiscard]] QList<QImage> colored(const RoleColors& colors) const;

private:
    std::vector<Stencil> stencils_;
};

/// `drawing` on a transparent ground of `size` pixels. Any thread.
[[nodiscard]] QImage rasterize(const Drawing& drawing, QSize size, const RoleColors& colors);

class QtImageRenderer final : public ImageRenderer {
public:
    /// Draws the picture before it returns; nothing when the drawing has no area.
    [[nodiscard]] std::shared_ptr<const Image> render(const Drawing& drawing) override;
};

}  // namespace sonvara
