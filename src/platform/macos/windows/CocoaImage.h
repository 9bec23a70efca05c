// Pictures as images of the system.
#pragma once

#include "ports/Image.h"

#include <string>

namespace sonvara {

/// Draws into an image of its own each time; concurrent calls do not meet.
class CocoaImageRenderer final : public ImageRenderer {
public:
    [[nodiscard]] std::shared_ptr<const Image> render(const Drawing& drawing) override;
};

/// The pixels of a picture made by the renderer, as a PNG file's content; empty when that fails.
[[nodiscard]] std::string pngData(const Image& image);

}  // namespace sonvara
