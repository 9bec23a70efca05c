// sonvara_icon FILE  Writes the application's icon.
#include "Appearance.h"
#include "IcnsFile.h"
#include "platform/macos/system/CocoaApplication.h"
#include "platform/macos/windows/CocoaImage.h"
#include "ui/AppIcon.h"

#include <cstdlib>
#include <fstream>
#include <iostream>

using namespace sonvara;

namespace {

/// The width in pixels, which stands in a PNG file's header.
unsigned pixelWidth(const std::string& png)
{
    unsigned width = 0;
    for (std::size_t i = 16; i < 20; ++i) width = width << 8 | static_cast<unsigned char>(png.at(i));
    return width;
}

/// The icon of that many pixels, however many of them make a point here; empty when that fails.
std::string picture(unsigned pixels)
{
    CocoaImageRenderer renderer;
    const auto draw = [&renderer](double points) { return pngData(*renderer.render(appIcon(points))); };
    const std::string png = draw(pixels);
    if (png.empty()) return {};
    const double scale = static_cast<double>(pixelWidth(png)) / pixels;
    return scale > 1 ? draw(pixels / scale) : png;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: sonvara_icon FILE\n";
        return EXIT_FAILURE;
    }
    const CocoaApplication application;
    useLightAppearance();
    std::vector<std::string> pictures;
    for (const unsigned pixels : icnsSizes()) {
        pictures.push_back(picture(pixels));
        if (pictures.back().empty() || pixelWidth(pictures.back()) != pixels) {
            std::cerr << "cannot draw the icon with " << pixels << " pixels\n";
            return EXIT_FAILURE;
        }
    }
    std::ofstream file(argv[1], std::ios::binary);
    file << icnsFile(pictures);
    file.close();
    return file ? EXIT_SUCCESS : EXIT_FAILURE;
}
