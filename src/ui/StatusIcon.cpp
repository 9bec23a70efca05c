#include "ui/StatusIcon.h"

namespace sonvara {
namespace {

constexpr double size = 18;
constexpr double grooveAlpha = 0.45;

Rect centredSquare(double radius)
{
    return {size / 2 - radius, size / 2 - radius, 2 * radius, 2 * radius};
}

StrokeOval ring(double radius, double lineWidth, DrawingColor color)
{
    return {centredSquare(radius), lineWidth, color};
}

FillOval disc(double radius, DrawingColor color)
{
    return {centredSquare(radius), color};
}

}  // namespace

Drawing statusIcon(bool isPlaying)
{
    const DrawingColor primary{isPlaying ? ColorRole::systemGreen : ColorRole::label};
    const DrawingColor accent{isPlaying ? ColorRole::systemOrange : ColorRole::label};
    const DrawingColor groove{primary.role, grooveAlpha};
    Drawing icon{size, size, !isPlaying, {}};
    icon.steps = {
        ring(7, 1.6, primary),                            // rim
        ring(5.2, 0.8, groove),                           // outer groove
        ring(4, 0.8, groove),                             // inner groove
        disc(2.4, primary),                               // label
        StrokeLine{{15, 14}, {10.4, 10.4}, 1.5, accent},  // tone arm
        FillOval{{14.1, 13.1, 1.8, 1.8}, accent},         // its pivot
    };
    // The stylus touches a groove, so its dot is not centred on the record.
    if (isPlaying) icon.steps.emplace_back(FillOval{{9.5, 9.5, 1.6, 1.6}, accent});
    return icon;
}

}  // namespace sonvara
