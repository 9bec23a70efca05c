#include "platform/linux/style/QtImageRenderer.h"

namespace sonvara {

QImage rasterize(const Drawing& drawing, QSize size, const RoleColors& colors)
{
    return Stencil(drawing, size).colored(colors);
}

QtImage::QtImage(const Drawing& drawing)
{
    for (const int side : sides) stencils_.emplace_back(drawing, QSize(side, side));
}

QtImage::QtImage(const Symbol& symbol)
{
    for (const int side : sides) stencils_.emplace_back(symbol, QSize(side, side));
}

QList<QImage> QtImage::colored(const RoleColors& colors) const
{
    QList<QImage> pictures;
    for (const auto& stencil : stencils_) pictures.append(stencil.colored(colors));
    return pictures;
}

std::shared_ptr<const Image> QtImageRenderer::render(const Drawing& drawing)
{
    if (!(drawing.width > 0 && drawing.height > 0)) return nullptr;
    return std::make_shared<QtImage>(drawing);
}

}  // namespace sonvara
