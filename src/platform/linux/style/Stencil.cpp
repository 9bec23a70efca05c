#include "platform/linux/style/Stencil.h"

#include "platform/linux/style/DrawingPainter.h"
#include "platform/linux/style/SymbolIcons.h"

#include <algorithm>
#include <array>
#include <span>

namespace sonvara {

namespace {

/// The inks that a drawing takes.
std::vector<QColor RoleColors::*> inksOf(const Drawing& drawing)
{
    if (drawing.isTemplate) return {&RoleColors::label, &RoleColors::halo};
    std::vector<QColor RoleColors::*> inks;
    for (const auto& step : drawing.steps) {
        const auto ink =
            RoleColors::member(std::visit([](const auto& each) { return each.color.role; }, step));
        if (std::ranges::find(inks, ink) == inks.end()) inks.push_back(ink);
    }
    return inks;
}

/// Where the channels of the three primary colours lie in a pixel.
constexpr std::array shifts{16, 8, 0};

}  // namespace

Stencil::Stencil(const Drawing& drawing, QSize size) : size_(size)
{
    draw(inksOf(drawing), [&](QPainter& painter, const RoleColors& colors) {
        paintDrawing(painter, drawing, QRectF(QPointF(), QSizeF(size)), colors);
    });
}

Stencil::Stencil(const Symbol& symbol, QSize size) : size_(size)
{
    draw({&RoleColors::label}, [&](QPainter& painter, const RoleColors& colors) {
        paintSymbol(painter, symbol.name, QRectF(QPointF(), QSizeF(size)), colors.label);
    });
}

// Painting is linear in the colours: what a primary colour leaves in its channel, in premultiplied pixels, is the
// weight of its ink. So each of three inks gets a primary colour, and the others are black, which covers them.
void Stencil::draw(const std::vector<Ink>& inks,
                   const std::function<void(QPainter&, const RoleColors&)>& paint)
{
    QImage image(size_, QImage::Format_ARGB32_Premultiplied);
    const auto area = static_cast<std::size_t>(size_.width()) * static_cast<std::size_t>(size_.height());
    for (std::size_t first = 0; first < inks.size(); first += shifts.size()) {
        const auto count = std::min(shifts.size(), inks.size() - first);
        RoleColors colors{Qt::black, Qt::black, Qt::black, Qt::black, Qt::black};
        for (std::size_t i = 0; i < count; ++i) colors.*inks[first + i] = QColor(0xFFU << shifts[i]);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paint(painter, colors);
        painter.end();
        // The lines have no padding: a pixel has the size of the alignment.
        const std::span pixels(reinterpret_cast<const QRgb*>(image.constBits()), area);
        for (std::size_t i = 0; i < count; ++i) {
            auto& plate = plates_.emplace_back(Plate{inks[first + i], std::vector<uchar>(area)});
            std::ranges::transform(pixels, plate.weights.begin(), [shift = shifts[i]](QRgb pixel) {
                return static_cast<uchar>(pixel >> shift);
            });
        }
    }
}

QImage Stencil::colored(const RoleColors& colors) const
{
    struct Layer {
        QRgb color;
        const uchar* weights;
    };
    std::vector<Layer> layers;
    for (const auto& plate : plates_) {
        const QColor& color = colors.*plate.ink;
        if (color.isValid()) layers.push_back({color.rgb(), plate.weights.data()});
    }
    QImage image(size_, QImage::Format_ARGB32_Premultiplied);
    auto* const pixels = reinterpret_cast<QRgb*>(image.bits());
    for (int i = 0; i < size_.width() * size_.height(); ++i) {
        int alpha = 0;
        int red = 0;
        int green = 0;
        int blue = 0;
        for (const auto& layer : layers) {
            const int weight = layer.weights[i];
            alpha += weight;
            red += weight * qRed(layer.color);
            green += weight * qGreen(layer.color);
            blue += weight * qBlue(layer.color);
        }
        alpha = std::min(alpha, 255);  // the weights are rounded
        const auto channel = [alpha](int sum) { return std::min((sum + 127) / 255, alpha); };
        pixels[i] = qRgba(channel(red), channel(green), channel(blue), alpha);
    }
    return image;
}

}  // namespace sonvara
