// Port: pictures drawn from vector shapes.
#pragma once

#include "ports/Style.h"

#include <memory>
#include <variant>
#include <vector>

namespace sonvara {

/// Points, in a space with its origin at the lower left and y growing upwards.
struct Point {
    double x = 0;
    double y = 0;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

/// A colour by role. An `alpha` below 1 replaces the role's own; it does not multiply it.
struct DrawingColor {
    ColorRole role = ColorRole::label;
    double alpha = 1;
};

/// The outline of the oval inscribed in `bounds`; the line's middle runs on the oval.
struct StrokeOval {
    Rect bounds;
    double lineWidth = 1;
    DrawingColor color;
};

struct FillOval {
    Rect bounds;
    DrawingColor color;
};

/// A straight line with round ends.
struct StrokeLine {
    Point from;
    Point to;
    double lineWidth = 1;
    DrawingColor color;
};

using DrawingStep = std::variant<StrokeOval, FillOval, StrokeLine>;

/// A picture as a list of steps; later ones paint over earlier ones.
struct Drawing {
    double width = 0;
    double height = 0;
    bool isTemplate = false;  ///< true: the system tints the shapes to suit their surroundings
    std::vector<DrawingStep> steps;
};

/// A rendered picture, in the platform's own form.
class Image {
public:
    virtual ~Image() = default;
};

/// Makes pictures. Any thread.
class ImageRenderer {
public:
    virtual ~ImageRenderer() = default;

    /// Draws at high quality; nothing when the platform cannot make the picture.
    [[nodiscard]] virtual std::shared_ptr<const Image> render(const Drawing& drawing) = 0;
};

}  // namespace sonvara
