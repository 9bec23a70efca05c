// Whether the tray icon is seen on panels whose colour nobody tells us.
#include "platform/linux/style/QtImageRenderer.h"

#include "ui/StatusIcon.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace sonvara::test {

namespace {

/// As the guidelines for accessible graphics define it, and ask for 3 at least.
double luminance(const QColor& color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QImage onPanel(const QColor& panel, int side, const RoleColors& colors)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(panel);
    QPainter(&image).drawImage(0, 0, rasterize(statusIcon(false), {side, side}, colors));
    return image;
}

/// The highest contrast on the way from the record's grooves over its rim to the picture's edge.
double contrastOfTheRim(const QImage& image, const QColor& panel, int degrees)
{
    const double middle = image.width() / 2.0;
    const double angle = degrees * std::numbers::pi / 180;
    double best = 1;
    for (double radius = 0.6 * middle;; radius += 0.1) {
        const QPoint pixel(static_cast<int>(std::floor(middle + radius * std::cos(angle))),
                           static_cast<int>(std::floor(middle - radius * std::sin(angle))));
        if (!image.rect().contains(pixel)) return best;
        best = std::max(best, contrast(image.pixelColor(pixel), panel));
    }
}

/// Of the rim's least visible place; a gap of a pixel or two does not open it.
double visibility(const QColor& panel, int side, const RoleColors& colors)
{
    const auto image = onPanel(panel, side, colors);
    double worst = 21;
    for (int degrees = 0; degrees < 360; degrees += 5) {
        double best = 1;
        for (int near = degrees - 10; near <= degrees + 10; near += 5)
            best = std::max(best, contrastOfTheRim(image, panel, near));
        worst = std::min(worst, best);
    }
    return worst;
}

const RoleColors forDark = RoleColors::on(QColor(0x2D, 0x2D, 0x2D), QColor(0xF2, 0xF2, 0xF2));
const RoleColors forLight = RoleColors::on(QColor(0xF0, 0xF0, 0xF0), QColor(0x23, 0x26, 0x29));

TEST(IconContrastTest, WithoutAHaloTheSilhouetteIsLostOnAPanelOfItsOwnTone)
{
    EXPECT_LT(visibility(QColor(0xE8, 0xE8, 0xE8), 24, forDark), 1.5);
    EXPECT_LT(visibility(QColor(0x35, 0x35, 0x35), 24, forLight), 1.5);
}

// Every tone of grey, so that each luminance of a panel is among them.
TEST(IconContrastTest, TheSilhouetteIsSeenOnEveryPanelWhicheverToneItHas)
{
    for (const auto& colors : {forDark.withHalo(), forLight.withHalo()}) {
        for (const int side : {16, 18, 22, 24, 32, 48}) {
            for (int tone = 0; tone < 256; tone += 5) {
                const double seen = visibility(QColor(tone, tone, tone), side, colors);
                EXPECT_GE(seen, 3) << colors.label.name().toStdString() << " on a tone of " << tone << ", "
                                   << side << " pixels";
            }
        }
    }
}

TEST(IconContrastTest, AHaloChangesNothingOfThePlayingIcon)
{
    const QSize size(24, 24);
    EXPECT_EQ(rasterize(statusIcon(true), size, forDark.withHalo()),
              rasterize(statusIcon(true), size, forDark));
}

}  // namespace

}  // namespace sonvara::test
