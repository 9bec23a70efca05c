// Pictures before their colours.
#pragma once

#include "platform/linux/style/StylePalette.h"
#include "ports/Image.h"

#include <QImage>
#include <QPainter>
#include <QSize>

#include <functional>
#include <vector>

namespace sonvara {

/// A picture that knows of each pixel how much of which ink it takes, and not what colour the inks have. To draw one is
/// work for a worker; to colour it is a fraction of that, and gives what drawing in these colours would. Any thread.
class Stencil {
public:
    /// Draws `drawing` as large as fits into the middle of `size` pixels.
    Stencil(const Drawing& drawing, QSize size);
    /// Draws a symbol, in the label's colour alone.
    Stencil(const Symbol& symbol, QSize size);

    /// The picture on a transparent ground. An ink whose colour is invalid leaves no trace.
    [[nodiscard]] QImage colored(const RoleColors& colors) const;

private:
    using Ink = QColor RoleColors::*;
    struct Plate {
        Ink ink = nullptr;
        std::vector<uchar> weights;  ///< of each pixel, line by line
    };

    void draw(const std::vector<Ink>& inks, const std::function<void(QPainter&, const RoleColors&)>& paint);

    QSize size_;
    std::vector<Plate> plates_;
};

}  // namespace sonvara
