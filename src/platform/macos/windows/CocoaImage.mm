#include "platform/macos/windows/CocoaImage.h"

#import "platform/macos/windows/CocoaStyle.h"
#import "platform/macos/windows/NativeImage.h"

namespace sonvara {

namespace {

NSRect toNSRect(const Rect& rect)
{
    return NSMakeRect(rect.x, rect.y, rect.width, rect.height);
}

// A role's own alpha is part of the system's colour and stays, unless the drawing asks for less.
NSColor* toNSColor(const DrawingColor& color)
{
    NSColor* own = colorFor(color.role);
    return color.alpha < 1 ? [own colorWithAlphaComponent:color.alpha] : own;
}

/// Carries out steps in the current drawing destination.
struct Painter {
    void operator()(const StrokeOval& step) const
    {
        [toNSColor(step.color) setStroke];
        NSBezierPath* path = [NSBezierPath bezierPathWithOvalInRect:toNSRect(step.bounds)];
        [path setLineWidth:step.lineWidth];
        [path stroke];
    }

    void operator()(const FillOval& step) const
    {
        [toNSColor(step.color) setFill];
        [[NSBezierPath bezierPathWithOvalInRect:toNSRect(step.bounds)] fill];
    }

    void operator()(const StrokeLine& step) const
    {
        [toNSColor(step.color) setStroke];
        NSBezierPath* path = [NSBezierPath bezierPath];
        [path moveToPoint:NSMakePoint(step.from.x, step.from.y)];
        [path lineToPoint:NSMakePoint(step.to.x, step.to.y)];
        [path setLineWidth:step.lineWidth];
        [path setLineCapStyle:NSLineCapStyleRound];
        [path stroke];
    }
};

}  // namespace

std::shared_ptr<const Image> CocoaImageRenderer::render(const Drawing& drawing)
{
    @autoreleasepool {
        auto image =
            ObjcPtr<NSImage>::adopt([[NSImage alloc] initWithSize:NSMakeSize(drawing.width, drawing.height)]);
        [image.get() lockFocus];
        [[NSGraphicsContext currentContext] setImageInterpolation:NSImageInterpolationHigh];
        for (const DrawingStep& step : drawing.steps) std::visit(Painter(), step);
        [image.get() unlockFocus];
        [image.get() setTemplate:(drawing.isTemplate ? YES : NO)];
        return std::make_shared<NativeImage>(std::move(image));
    }
}

std::string pngData(const Image& image)
{
    @autoreleasepool {
        NSBitmapImageRep* pixels =
            [NSBitmapImageRep imageRepWithData:[nativeImage(&image) TIFFRepresentation]];
        NSData* png = [pixels representationUsingType:NSBitmapImageFileTypePNG
                                           properties:[NSDictionary dictionary]];
        if (png == nil) return {};
        return {static_cast<const char*>([png bytes]), [png length]};
    }
}

}  // namespace sonvara
