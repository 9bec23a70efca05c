#include "platform/linux/style/Stencil.h"

#include "helpers/Difference.h"
#include "platform/linux/style/DrawingPainter.h"
#include "platform/linux/style/QtImageRenderer.h"
#include "platform/linux/style/SymbolIcons.h"
#include "ui/AppIcon.h"
#include "ui/StatusIcon.h"

#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

constexpr int rounding = 2;  // of 255
const RoleColors light = RoleColors::on(QColor(0xF0, 0xF0, 0xF0), QColor(0x23, 0x26, 0x29));
const RoleColors dark = RoleColors::on(QColor(0x2D, 0x2D, 0x2D), QColor(0xF2, 0xF2, 0xF2));

QImage painted(QSize size, const std::function<void(QPainter&, const QRectF&)>& paint)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter, QRectF(QPointF(), QSizeF(size)));
    return image;
}

QImage painted(const Drawing& drawing, QSize size, const RoleColors& colors)
{
    return painted(size, [&](QPainter& painter, const QRectF& target) {
        paintDrawing(painter, drawing, target, colors);
    });
}

/// One half over the other, in every role.
Drawing inAllRoles()
{
    Drawing drawing{20, 20, false, {}};
    for (const auto role : {ColorRole::label, ColorRole::secondaryLabel, ColorRole::systemGreen,
                            ColorRole::systemOrange, ColorRole::label}) {
        const auto step = 3.0 * static_cast<double>(drawing.steps.size());
        drawing.steps.emplace_back(FillOval{{step, step / 2, 8, 9}, {role, 0.7}});
    }
    return drawing;
}

TEST(StencilTest, GivesWhatDrawingInTheColorsWould)
{
    for (const auto& drawing : {statusIcon(false), statusIcon(true), appIcon(32), inAllRoles()}) {
        for (const auto& colors : {light, dark, light.withHalo(), dark.withHalo()}) {
            for (const QSize size : {QSize(18, 18), QSize(36, 36), QSize(40, 24)}) {
                EXPECT_LE(difference(Stencil(drawing, size).colored(colors), painted(drawing, size, colors)),
                          rounding)
                    << drawing.steps.size() << " steps, " << size.width() << " pixels, "
                    << colors.label.name().toStdString() << colors.halo.isValid();
            }
        }
    }
}

TEST(StencilTest, GivesASymbolInTheLabelsColor)
{
    const QSize size(24, 24);
    const Stencil note(Symbol{"music.note", ""}, size);
    for (const auto& colors : {light, dark.withHalo()}) {
        const auto expected = painted(size, [&](QPainter& painter, const QRectF& target) {
            paintSymbol(painter, "music.note", target, colors.label);
        });
        EXPECT_LE(difference(note.colored(colors), expected), rounding);
    }
}

TEST(StencilTest, TakesNewColorsEachTime)
{
    const Stencil icon(statusIcon(false), {18, 18});
    EXPECT_NE(icon.colored(light), icon.colored(dark));
    EXPECT_NE(icon.colored(light), icon.colored(light.withHalo()));
    EXPECT_EQ(icon.colored(light), icon.colored(light));
}

}  // namespace

}  // namespace sonvara::test
