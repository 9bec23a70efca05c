#include "ui/AppIcon.h"

#include "ui/StatusIcon.h"

namespace sonvara {

namespace {

/// A step enlarged by `factor`.
struct Enlarge {
    double factor;

    [[nodiscard]] Point operator()(Point point) const { return {point.x * factor, point.y * factor}; }
    [[nodiscard]] Rect operator()(const Rect& rect) const
    {
        return {rect.x * factor, rect.y * factor, rect.width * factor, rect.height * factor};
    }
    [[nodiscard]] DrawingStep operator()(const StrokeOval& step) const
    {
        return StrokeOval{(*this)(step.bounds), step.lineWidth * factor, step.color};
    }
    [[nodiscard]] DrawingStep operator()(const FillOval& step) const
    {
        return FillOval{(*this)(step.bounds), step.color};
    }
    [[nodiscard]] DrawingStep operator()(const StrokeLine& step) const
    {
        return StrokeLine{(*this)(step.from), (*this)(step.to), step.lineWidth * factor, step.color};
    }
};

}  // namespace

Drawing appIcon(double size)
{
    const Drawing record = statusIcon(true);
    const Enlarge enlarge{size / record.width};
    Drawing icon{size, size, false, {}};
    icon.steps.push_back(
        enlarge(FillOval{{0.4, 0.4, record.width - 0.8, record.height - 0.8}, {ColorRole::label}}));
    for (const DrawingStep& step : record.steps) icon.steps.push_back(std::visit(enlarge, step));
    return icon;
}

}  // namespace sonvara
