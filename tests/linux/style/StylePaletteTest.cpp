// The colours and fonts of the roles, to the figure.
#include "platform/linux/style/StylePalette.h"

#include "helpers/EventLoop.h"
#include "platform/linux/style/ThemeWatcher.h"

#include <QApplication>
#include <QFontDatabase>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include <utility>

namespace sonvara::test {

namespace {

/// The fonts and colours of the application as they were, at its end.
class StylePaletteTest : public testing::Test {
protected:
    ~StylePaletteTest() override
    {
        QApplication::setFont(labelFont_, "QLabel");
        QApplication::setFont(menuFont_, "QMenu");
        QApplication::setPalette(palette_);
        runEvents();
    }

    static QFont font(double points)
    {
        QFont font(QStringLiteral("Sample"));
        font.setPointSizeF(points);
        return font;
    }
    static QFont pixels(int size)
    {
        QFont font(QStringLiteral("Sample"));
        font.setPixelSize(size);
        return font;
    }

private:
    const QFont labelFont_ = QApplication::font("QLabel");
    const QFont menuFont_ = QApplication::font("QMenu");
    const QPalette palette_ = QApplication::palette();
};

TEST_F(StylePaletteTest, ColorsAreThoseOfTheSystemOnItsTone)
{
    const auto light = RoleColors::on(Qt::white, Qt::black);
    EXPECT_EQ(light[ColorRole::label], QColor(Qt::black));
    EXPECT_EQ(light[ColorRole::secondaryLabel].rgb(), qRgb(87, 87, 87));
    EXPECT_EQ(light[ColorRole::systemGreen], QColor(0x34, 0xC7, 0x59));
    EXPECT_EQ(light[ColorRole::systemOrange], QColor(0xFF, 0x95, 0x00));
    EXPECT_FALSE(light.halo.isValid());
    const auto dark = RoleColors::on(Qt::black, Qt::white);
    EXPECT_EQ(dark[ColorRole::label], QColor(Qt::white));
    EXPECT_EQ(dark[ColorRole::secondaryLabel].rgb(), qRgb(168, 168, 168));
    EXPECT_EQ(dark[ColorRole::systemGreen], QColor(0x30, 0xD1, 0x58));
    EXPECT_EQ(dark[ColorRole::systemOrange], QColor(0xFF, 0x9F, 0x0A));
    EXPECT_EQ(RoleColors::on(Qt::red, Qt::red).systemGreen, light.systemGreen) << "without a tone";
}

TEST_F(StylePaletteTest, MixesByShares)
{
    EXPECT_EQ(mixed(QColor(200, 100, 0), QColor(0, 50, 100), 0.66).rgb(), qRgb(132, 83, 34));
}

TEST_F(StylePaletteTest, AHaloIsOfTheOppositeTone)
{
    for (const auto& [tone, halo] :
         {std::pair(0, Qt::white), {100, Qt::white}, {140, Qt::black}, {255, Qt::black}})
        EXPECT_EQ(RoleColors::on(Qt::white, QColor(tone, tone, tone)).withHalo().halo, QColor(halo)) << tone;
}

TEST_F(StylePaletteTest, TakesTheColorsOfActiveWindows)
{
    QPalette palette(Qt::gray);
    palette.setColor(QPalette::Active, QPalette::Window, Qt::black);
    palette.setColor(QPalette::Active, QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::Inactive, QPalette::Window, Qt::white);
    palette.setColor(QPalette::Inactive, QPalette::WindowText, Qt::black);
    palette.setCurrentColorGroup(QPalette::Inactive);
    EXPECT_EQ(RoleColors::of(palette), RoleColors::on(Qt::black, Qt::white));
}

TEST_F(StylePaletteTest, FontsFollowTheUsersFontsForLabelsAndMenus)
{
    QApplication::setFont(font(20), "QLabel");
    QApplication::setFont(font(30), "QMenu");
    EXPECT_EQ(roleFont(FontRole::body), QApplication::font("QLabel"));
    EXPECT_EQ(roleFont(FontRole::body).pointSizeF(), 20);
    EXPECT_FALSE(roleFont(FontRole::body).bold());
    EXPECT_EQ(roleFont(FontRole::headline).pointSizeF(), 20);
    EXPECT_TRUE(roleFont(FontRole::headline).bold());
    EXPECT_EQ(roleFont(FontRole::caption).pointSizeF(), 17);
    EXPECT_EQ(roleFont(FontRole::caption).families(), QStringList{"Sample"});
    EXPECT_EQ(roleFont(FontRole::captionMonospaced).pointSizeF(), 17);
    EXPECT_TRUE(roleFont(FontRole::captionMonospaced).fixedPitch());
    EXPECT_EQ(roleFont(FontRole::captionMonospaced).families(),
              QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
    EXPECT_EQ(roleFont(FontRole::smallMenu).pointSizeF(), 25.5);
}

TEST_F(StylePaletteTest, SmallFontsStayReadable)
{
    for (const auto& [usual, small] : {std::pair(font(8), 7.0), {font(10), 8.5}}) {
        QApplication::setFont(usual, "QLabel");
        EXPECT_EQ(roleFont(FontRole::caption).pointSizeF(), small);
    }
    for (const auto& [usual, small] : {std::pair(9, 9), {11, 9}, {20, 17}}) {
        QApplication::setFont(pixels(usual), "QLabel");
        EXPECT_EQ(roleFont(FontRole::caption).pixelSize(), small);
    }
}

TEST_F(StylePaletteTest, AChangeOfTheThemeIsToldOnceWhenAllOfItIsThere)
{
    auto& watcher = ThemeWatcher::instance();
    EXPECT_EQ(&watcher, &ThemeWatcher::instance());
    runEvents();
    const QSignalSpy changes(&watcher, &ThemeWatcher::changed);
    QApplication::setPalette(QPalette(QColor(0x30, 0x30, 0x30)));
    QApplication::setPalette(QPalette(QColor(0x40, 0x40, 0x40)));
    EXPECT_EQ(changes.size(), 0);
    EXPECT_TRUE(eventually([&] { return !changes.isEmpty(); }));
    for (int i = 0; i < 5; ++i) runEvents();
    EXPECT_EQ(changes.size(), 1);
    const QFont before = QApplication::font();
    QApplication::setFont(font(20));
    EXPECT_TRUE(eventually([&] { return changes.size() == 2; }));
    QApplication::setFont(before);
}

}  // namespace

}  // namespace sonvara::test
