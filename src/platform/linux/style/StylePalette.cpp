#include "platform/linux/style/StylePalette.h"

#include <QApplication>
#include <QFontDatabase>

#include <algorithm>

namespace sonvara {

namespace {

constexpr double captionScale = 0.85;
constexpr double smallestPointSize = 7;
constexpr double secondaryShare = 0.66;  // keeps a contrast above 4.5 to 1 in the usual themes

QFont scaled(QFont font, double factor)
{
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(std::max(smallestPointSize, font.pointSizeF() * factor));
    } else {
        font.setPixelSize(std::max(9, qRound(font.pixelSize() * factor)));
    }
    return font;
}

}  // namespace

QColor mixed(const QColor& over, const QColor& under, double share)
{
    const auto channel = [share](float a, float b) {
        return static_cast<float>(a * share + b * (1 - share));
    };
    return QColor::fromRgbF(channel(over.redF(), under.redF()), channel(over.greenF(), under.greenF()),
                            channel(over.blueF(), under.blueF()));
}

QColor RoleColors::* RoleColors::member(ColorRole role)
{
    switch (role) {
    case ColorRole::secondaryLabel: return &RoleColors::secondaryLabel;
    case ColorRole::systemGreen: return &RoleColors::systemGreen;
    case ColorRole::systemOrange: return &RoleColors::systemOrange;
    case ColorRole::label: break;
    }
    return &RoleColors::label;
}

RoleColors RoleColors::on(const QColor& background, const QColor& text)
{
    const bool dark = background.lightnessF() < text.lightnessF();
    return {text,
            mixed(text, background, secondaryShare),
            dark ? QColor(0x30, 0xD1, 0x58) : QColor(0x34, 0xC7, 0x59),
            dark ? QColor(0xFF, 0x9F, 0x0A) : QColor(0xFF, 0x95, 0x00),
            {}};
}

RoleColors RoleColors::withHalo() const
{
    auto colors = *this;
    colors.halo = label.lightnessF() > 0.5F ? Qt::black : Qt::white;
    return colors;
}

RoleColors RoleColors::of(const QPalette& palette)
{
    return on(palette.color(QPalette::Active, QPalette::Window),
              palette.color(QPalette::Active, QPalette::WindowText));
}

QFont roleFont(FontRole role)
{
    switch (role) {
    case FontRole::body: return QApplication::font("QLabel");
    case FontRole::headline: {
        auto font = QApplication::font("QLabel");
        font.setBold(true);
        return font;
    }
    case FontRole::caption: return scaled(QApplication::font("QLabel"), captionScale);
    case FontRole::captionMonospaced: {
        auto font = scaled(QApplication::font("QLabel"), captionScale);
        font.setFamilies(QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
        font.setFixedPitch(true);
        return font;
    }
    case FontRole::smallMenu: return scaled(QApplication::font("QMenu"), captionScale);
    }
    return QApplication::font("QLabel");
}

}  // namespace sonvara
