#include "platform/linux/windows/QtWindows.h"

#include "windows/WindowFixture.h"

#include <QApplication>
#include <QScreen>

#include <algorithm>

namespace sonvara::test {

namespace {

using WindowsTest = WindowFixture;

TEST_F(WindowsTest, StandsInTheMiddleOfTheScreenAndCanBeClosedAndMiniaturised)
{
    show();
    const auto windows = QApplication::topLevelWidgets();
    const auto found = std::ranges::find_if(
        windows, [](const auto* each) { return qobject_cast<const FormWindow*>(each) != nullptr; });
    ASSERT_NE(found, windows.end());
    const auto* window = *found;
    EXPECT_EQ(probe::contentSize(title), (probe::Size{420, 420}));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
    const auto distance = window->geometry().center() - window->screen()->availableGeometry().center();
    EXPECT_LE(distance.manhattanLength(), 8);  // the frame comes on top
    const auto flags = window->windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint) && flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
}

}  // namespace

}  // namespace sonvara::test
