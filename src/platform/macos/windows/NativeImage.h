// The system's image behind a picture. For Objective-C++ sources only.
#pragma once

#import "platform/macos/system/ObjcPtr.h"
#include "ports/Image.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace sonvara {

class NativeImage final : public Image {
public:
    explicit NativeImage(ObjcPtr<NSImage> image) : image_(std::move(image)) {}
    [[nodiscard]] NSImage* get() const { return image_.get(); }

private:
    ObjcPtr<NSImage> image_;
};

/// Every picture of this platform is a NativeImage. Nil for none.
[[nodiscard]] inline NSImage* nativeImage(const Image* image)
{
    const auto* native = static_cast<const NativeImage*>(image);
    return native != nullptr ? native->get() : nil;
}

}  // namespace sonvara
