// sonvara_icons FOLDER  Writes the application's icons into a new icon theme folder.
#include "SvgText.h"
#include "platform/linux/style/Icons.h"
#include "platform/linux/style/QtImageRenderer.h"
#include "ui/AppIcon.h"
#include "ui/StatusIcon.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

using namespace sonvara;

namespace {

constexpr std::array pngSizes{16, 22, 24, 32, 48, 64, 128, 256};
constexpr int svgSize = 128;
constexpr int symbolicSize = 16;
constexpr double points = 18;

// What the desktop replaces by the colour of its texts.
RoleColors colorsOfSymbol()
{
    return RoleColors::on(Qt::white, QColor(0x2E, 0x34, 0x36));
}

/// The path of a file in `folder`, which is made.
std::filesystem::path fileIn(const std::filesystem::path& folder, const char* ending)
{
    std::filesystem::create_directories(folder);
    return folder / (std::string(SONVARA_IDENTIFIER) + ending);
}

bool write(const std::filesystem::path& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    return bool(file);
}

bool writeIcons(const std::filesystem::path& theme)
{
    const Drawing icon = appIcon(points);
    const RoleColors colors = applicationIconColors();
    for (const int side : pngSizes) {
        const auto name = std::to_string(side);
        const auto path = fileIn(theme / (name + "x" + name) / "apps", ".png");
        if (!rasterize(icon, QSize(side, side), colors).save(QString::fromStdString(path.string())))
            return false;
    }
    return write(fileIn(theme / "scalable" / "apps", ".svg"), svgText(icon, colors, svgSize)) &&
           write(fileIn(theme / "symbolic" / "apps", "-symbolic.svg"),
                 svgText(statusIcon(false), colorsOfSymbol(), symbolicSize));
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: sonvara_icons FOLDER\n";
        return EXIT_FAILURE;
    }
    if (writeIcons(argv[1])) return EXIT_SUCCESS;
    std::cerr << "cannot write the icons to " << argv[1] << '\n';
    return EXIT_FAILURE;
}
