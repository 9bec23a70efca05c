#include "platform/linux/windows/QtWindows.h"

#include "SampleForm.h"
#include "helpers/EventLoop.h"

#include <QApplication>
#include <QScreen>
#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

struct Delegate final : WindowDelegate {
    void windowWillClose(Window& window) override
    {
        ++closings;
        if (owned.get() == &window) owned.reset();
    }

    int closings = 0;
    std::shared_ptr<Window> owned;
};

class WindowsTest : public testing::Test {
protected:
    void TearDown() override { runEvents(); }

    WindowSetup setup()
    {
        WindowSetup setup;
        setup.title = "Sample";
        setup.contentWidth = 420;
        setup.contentHeight = 360;
        setup.isClosable = setup.isMiniaturizable = setup.isCentered = true;
        setup.content = sample.form();
        return setup;
    }

    std::shared_ptr<Window> make()
    {
        auto window = QtWindows().make(setup());
        window->setDelegate(delegate);
        window->makeKeyAndOrderFront();
        runEvents();
        return window;
    }

    static QWidget* shown()
    {
        for (auto* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && qobject_cast<FormWindow*>(widget) != nullptr) return widget;
        }
        return nullptr;
    }

    SampleForm sample;
    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
};

TEST_F(WindowsTest, IsNotShownBeforeItIsAsked)
{
    const auto window = QtWindows().make(setup());
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(shown(), nullptr);
}

TEST_F(WindowsTest, ShowsTheWholeFormInTheMiddleOfTheScreen)
{
    const auto window = make();
    ASSERT_NE(shown(), nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(shown()->windowTitle(), "Sample");
    EXPECT_EQ(shown()->size(), QSize(420, 420));
    EXPECT_EQ(shown()->minimumSize(), shown()->maximumSize());
    const auto distance = shown()->geometry().center() - shown()->screen()->availableGeometry().center();
    EXPECT_LE(distance.manhattanLength(), 8);  // the frame comes on top
    const auto flags = shown()->windowFlags();
    EXPECT_TRUE(flags.testFlag(Qt::WindowCloseButtonHint) && flags.testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_FALSE(flags.testFlag(Qt::WindowMaximizeButtonHint));
}

TEST_F(WindowsTest, IsNotVisibleWhileMiniaturised)
{
    const auto window = make();
    shown()->showMinimized();
    EXPECT_FALSE(window->isVisible());
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(window->isVisible());
}

TEST_F(WindowsTest, TellsItsDelegateOfTheCloseAndLetsGoOfTheForm)
{
    const auto window = make();
    shown()->close();
    EXPECT_EQ(delegate->closings, 1);
    EXPECT_FALSE(window->isVisible());
    runEvents();
    EXPECT_EQ(shown(), nullptr);
    sample.changed.call();  // nobody listens any more
}

TEST_F(WindowsTest, MayBeDroppedInsideTheCall)
{
    delegate->owned = make();
    shown()->close();
    EXPECT_EQ(delegate->closings, 1);
    EXPECT_EQ(delegate->owned, nullptr);
}

TEST_F(WindowsTest, ClosesWithoutAWordWhenItIsDropped)
{
    auto window = make();
    window.reset();
    EXPECT_EQ(shown(), nullptr);
    EXPECT_EQ(delegate->closings, 0);
}

TEST_F(WindowsTest, TellsTheFormThatItAppears)
{
    const auto window = make();
    EXPECT_EQ(sample.appearances, 1);
    window->makeKeyAndOrderFront();
    EXPECT_EQ(sample.appearances, 1);
}

}  // namespace

}  // namespace sonvara::test
