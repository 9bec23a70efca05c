// How large the settings are on the screen.
#include "fakes/FakeDesktop.h"
#include "platform/linux/windows/FormWidget.h"
#include "ui/SettingsView.h"

#include <QApplication>
#include <QScrollBar>
#include <gtest/gtest.h>

#include <memory>

namespace sonvara::test {

namespace {

class SettingsFrameTest : public testing::Test {
protected:
    ~SettingsFrameTest() override { QApplication::setFont(fontBefore_); }

    static void useFont(double points)
    {
        auto font = QApplication::font();
        font.setPointSizeF(points);
        QApplication::setFont(font);
    }

    static std::unique_ptr<FormWidget> show(std::shared_ptr<const Form> form)
    {
        auto widget = std::make_unique<FormWidget>(std::move(form));
        widget->resize(widget->sizeHint());
        widget->show();
        QCoreApplication::processEvents();
        return widget;
    }
    std::unique_ptr<FormWidget> showSettings()
    {
        return show(SettingsView::create(desktop_.platform)->form());
    }

    static bool isSeenWhole(const FormWidget& widget) { return widget.verticalScrollBar()->maximum() == 0; }
    /// The height below which rows would be cut off.
    static int need(const FormWidget& widget) { return widget.widget()->heightForWidth(420); }

    FakeDesktop desktop_;

private:
    QFont fontBefore_ = QApplication::font();
};

// From Qt's own over those of KDE, Xfce and MATE to those of GNOME and LXQt.
TEST_F(SettingsFrameTest, IsWhatTheFormAsksForInTheFontsThatDesktopsComeWith)
{
    for (const double points : {9.0, 10.0, 11.0}) {
        useFont(points);
        const auto widget = showSettings();
        EXPECT_EQ(widget->sizeHint(), QSize(420, 420)) << points << " points need " << need(*widget);
        EXPECT_TRUE(isSeenWhole(*widget)) << points;
    }
}

TEST_F(SettingsFrameTest, GrowsInHeightAloneAndAsFarAsALargerFontNeeds)
{
    useFont(13);
    const auto widget = showSettings();
    EXPECT_GT(need(*widget), 420);
    EXPECT_EQ(widget->sizeHint(), QSize(420, need(*widget)));
    EXPECT_TRUE(isSeenWhole(*widget));
}

TEST_F(SettingsFrameTest, GrowsAsFarAsLongerTextsNeed)
{
    useFont(10);
    auto longer = std::make_shared<Form>(*SettingsView::create(desktop_.platform)->form());
    for (auto& section : longer->sections) {
        for (auto& row : section.rows) {
            if (auto* help = std::get_if<StyledText>(&row)) help->text += " " + help->text;
        }
    }
    const auto widget = show(longer);
    EXPECT_GT(need(*widget), 420);
    EXPECT_EQ(widget->sizeHint(), QSize(420, need(*widget)));
    EXPECT_TRUE(isSeenWhole(*widget));
}

}  // namespace

}  // namespace sonvara::test
