#include "SvgText.h"

#include <cmath>
#include <sstream>

namespace sonvara {

namespace {

/// A closed oval around the middle of `bounds`, whose radii are larger by `growth`.
std::string ovalPath(const Rect& bounds, double growth)
{
    const double rx = bounds.width / 2 + growth;
    const double ry = bounds.height / 2 + growth;
    std::ostringstream path;
    path << 'M' << bounds.x - growth << ' ' << bounds.y + bounds.height / 2;
    for (const double across : {2 * rx, -2 * rx})
        path << 'a' << rx << ' ' << ry << " 0 1 0 " << across << " 0";
    path << 'z';
    return path.str();
}

/// Writes one step in the drawing's own space.
class StepWriter {
public:
    StepWriter(std::ostream& out, const RoleColors& colors, bool isTemplate)
        : out_(out),
          colors_(colors),
          isTemplate_(isTemplate)
    {}

    void operator()(const StrokeOval& step) const
    {
        const double half = step.lineWidth / 2;
        write(ovalPath(step.bounds, half) + ovalPath(step.bounds, -half), step.color);
    }

    void operator()(const FillOval& step) const { write(ovalPath(step.bounds, 0), step.color); }

    void operator()(const StrokeLine& step) const
    {
        const double half = step.lineWidth / 2;
        const double length = std::hypot(step.to.x - step.from.x, step.to.y - step.from.y);
        const double nx = -(step.to.y - step.from.y) / length * half;  // from the line to its left edge
        const double ny = (step.to.x - step.from.x) / length * half;
        std::ostringstream path;
        const auto turnTo = [&](double x, double y) {
            path << 'A' << half << ' ' << half << " 0 0 0 " << x << ' ' << y;
        };
        path << 'M' << step.from.x + nx << ' ' << step.from.y + ny;
        path << 'L' << step.to.x + nx << ' ' << step.to.y + ny;
        turnTo(step.to.x - nx, step.to.y - ny);
        path << 'L' << step.from.x - nx << ' ' << step.from.y - ny;
        turnTo(step.from.x + nx, step.from.y + ny);
        path << 'z';
        write(path.str(), step.color);
    }

private:
    void write(const std::string& path, const DrawingColor& color) const
    {
        const auto fill = colors_[isTemplate_ ? ColorRole::label : color.role];
        out_ << "    <path fill=\"" << fill.name().toStdString() << '"';
        if (color.alpha < 1) out_ << " fill-opacity=\"" << color.alpha << '"';
        out_ << " fill-rule=\"evenodd\" d=\"" << path << "\"/>\n";
    }

    std::ostream& out_;
    const RoleColors& colors_;
    bool isTemplate_;
};

}  // namespace

std::string svgText(const Drawing& drawing, const RoleColors& colors, int side)
{
    std::ostringstream out;
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << side << "\" height=\"" << side
        << "\" viewBox=\"0 0 " << drawing.width << ' ' << drawing.height << "\">\n";
    // The drawing's y grows upwards.
    out << "  <g transform=\"matrix(1 0 0 -1 0 " << drawing.height << ")\">\n";
    const StepWriter writeStep(out, colors, drawing.isTemplate);
    for (const auto& step : drawing.steps) std::visit(writeStep, step);
    out << "  </g>\n</svg>\n";
    return out.str();
}

}  // namespace sonvara
