// Pictures of the windows, in fonts and a style of the test's own: on each machine and with each Qt they are the same.
#include "PlainStyle.h"
#include "helpers/EventLoop.h"
#include "helpers/Golden.h"
#include "platform/linux/windows/FormWidget.h"
#include "platform/linux/windows/LogDialog.h"
#include "platform/linux/windows/LogListView.h"
#include "windows/SampleForm.h"

#include <QApplication>
#include <QFontInfo>
#include <QPainter>
#include <gtest/gtest.h>

#include <memory>
#include <tuple>

namespace sonvara::test {

namespace {

// Before the first font is asked for.
[[maybe_unused]] const bool hasFontsOfItsOwn = qputenv("FONTCONFIG_FILE", FONTS_FILE);

enum class Theme { light, dark };

QPalette palette(Theme theme)
{
    const bool dark = theme == Theme::dark;
    QPalette colors(dark ? QColor(0xF2, 0xF2, 0xF2) : QColor(0x23, 0x26, 0x29),  // texts in windows
                    dark ? QColor(0x50, 0x50, 0x60) : QColor(0xD0, 0xD0, 0xE0),  // the blocks of controls
                    Qt::yellow, Qt::darkYellow,                                  // light and dark edges
                    dark ? QColor(0x70, 0x70, 0x70) : QColor(0xB0, 0xB0, 0xB0),  // dividers
                    Qt::magenta, Qt::cyan,                                       // texts in controls
                    dark ? QColor(0x1B, 0x1B, 0x1B) : QColor(0xFF, 0xFF, 0xFF),  // grounds of texts
                    dark ? QColor(0x2D, 0x2D, 0x2D) : QColor(0xEC, 0xEC, 0xEC));
    colors.setColor(QPalette::Highlight, Qt::blue);
    return colors;
}

/// In a theme and with so many pixels for a point.
class FaceTest : public testing::TestWithParam<std::tuple<Theme, int>> {
protected:
    FaceTest()
    {
        QFont font("Boxes");
        font.setPixelSize(10);
        QApplication::setFont(font);
        QApplication::setStyle(new PlainStyle);
        QApplication::setPalette(palette(std::get<Theme>(GetParam())));
        runEvents();
    }
    ~FaceTest() override { runEvents(); }

    static testing::AssertionResult looksAsBefore(QWidget& widget, const char* name)
    {
        const auto [theme, scale] = GetParam();
        QImage image(widget.size() * scale, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        widget.render(&image);
        image.setDevicePixelRatio(1);
        return test::looksAsBefore(
            image, QString("%1-%2-%3").arg(name, theme == Theme::dark ? "dark" : "light").arg(scale));
    }

    testing::AssertionResult logLooksAsBefore(const char* name)
    {
        auto sheet = sample_.sheet();
        sheet.width = 260;
        sheet.height = 180;
        LogDialog dialog(std::move(sheet), nullptr);
        dialog.show();
        runEvents();
        return looksAsBefore(dialog, name);
    }

    SampleForm sample_;
};

TEST_P(FaceTest, DrawsWithTheFontsOfTheTest)
{
    EXPECT_EQ(QFontInfo(QApplication::font()).family(), "Boxes");
}

TEST_P(FaceTest, OfTheForm)
{
    FormWidget form(sample_.form());
    form.resize(form.sizeHint());
    form.show();
    runEvents();
    EXPECT_TRUE(looksAsBefore(form, "form"));
}

TEST_P(FaceTest, OfTheLog)
{
    auto done = SampleForm::row("2", "done");
    done.symbol = {"checkmark.circle.fill", ""};
    done.symbolColor = ColorRole::systemGreen;
    auto failed = SampleForm::row("1", "failed");
    failed.symbol = {"exclamationmark.triangle.fill", ""};
    failed.symbolColor = ColorRole::systemOrange;
    sample_.rows = {SampleForm::row("3", "so long that it needs two lines"), done, failed};
    EXPECT_TRUE(logLooksAsBefore("log"));
}

TEST_P(FaceTest, OfTheEmptyLog)
{
    EXPECT_TRUE(logLooksAsBefore("empty"));
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Theme, int>>& test)
{
    const auto [theme, scale] = test.param;
    return (theme == Theme::dark ? "Dark" : "Light") + std::to_string(scale);
}

INSTANTIATE_TEST_SUITE_P(Themes, FaceTest,
                         testing::Combine(testing::Values(Theme::light, Theme::dark), testing::Values(1, 2)),
                         nameOf);

}  // namespace

}  // namespace sonvara::test
