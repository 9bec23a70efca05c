#include "platform/linux/style/DrawingPainter.h"

#include <QPen>

#include <algorithm>

namespace sonvara {

namespace {

QRectF toQt(const Rect& rect)
{
    return {rect.x, rect.y, rect.width, rect.height};
}

/// In the drawing's own space, on each side of a shape: more than a pixel in the smallest tray, and just within the
/// picture of the status icon.
constexpr double haloWidth = 1.2;

/// Draws what lies behind one step of a template, in the drawing's own space.
class HaloPainter {
public:
    HaloPainter(QPainter& painter, const QColor& color) : painter_(painter), color_(color) {}

    void operator()(const StrokeOval& step) const { drawOval(step.bounds, step.lineWidth + 2 * haloWidth); }
    void operator()(const FillOval& step) const { drawOval(step.bounds, 2 * haloWidth); }
    void operator()(const StrokeLine& step) const
    {
        painter_.setPen(QPen(color_, step.lineWidth + 2 * haloWidth, Qt::SolidLine, Qt::RoundCap));
        painter_.drawLine(QPointF(step.from.x, step.from.y), QPointF(step.to.x, step.to.y));
    }

private:
    void drawOval(const Rect& bounds, double lineWidth) const
    {
        painter_.setPen(QPen(color_, lineWidth));
        painter_.setBrush(Qt::NoBrush);
        painter_.drawEllipse(toQt(bounds));
    }

    QPainter& painter_;
    QColor color_;
};

/// Draws one step in the drawing's own space.
class StepPainter {
public:
    StepPainter(QPainter& painter, const RoleColors& colors, bool isTemplate)
        : painter_(painter),
          colors_(colors),
          isTemplate_(isTemplate)
    {}

    void operator()(const StrokeOval& step) const
    {
        painter_.setPen(QPen(color(step.color), step.lineWidth));
        painter_.setBrush(Qt::NoBrush);
        painter_.drawEllipse(toQt(step.bounds));
    }

    void operator()(const FillOval& step) const
    {
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(color(step.color));
        painter_.drawEllipse(toQt(step.bounds));
    }

    void operator()(const StrokeLine& step) const
    {
        painter_.setPen(QPen(color(step.color), step.lineWidth, Qt::SolidLine, Qt::RoundCap));
        painter_.drawLine(QPointF(step.from.x, step.from.y), QPointF(step.to.x, step.to.y));
    }

private:
    [[nodiscard]] QColor color(const DrawingColor& wanted) const
    {
        QColor color = colors_[isTemplate_ ? ColorRole::label : wanted.role];
        color.setAlphaF(static_cast<float>(std::clamp(wanted.alpha, 0.0, 1.0)));
        return color;
    }

    QPainter& painter_;
    const RoleColors& colors_;
    bool isTemplate_;
};

}  // namespace

void paintDrawing(QPainter& painter, const Drawing& drawing, const QRectF& target, const RoleColors& colors)
{
    const double scale = std::min(target.width() / drawing.width, target.height() / drawing.height);
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.translate(target.center());
    painter.scale(scale, -scale);  // the drawing's y grows upwards
    painter.translate(-drawing.width / 2, -drawing.height / 2);
    if (drawing.isTemplate && colors.halo.isValid()) {
        const HaloPainter paintHalo(painter, colors.halo);
        for (const auto& step : drawing.steps) std::visit(paintHalo, step);
    }
    const StepPainter paintStep(painter, colors, drawing.isTemplate);
    for (const auto& step : drawing.steps) std::visit(paintStep, step);
    painter.restore();
}

}  // namespace sonvara
