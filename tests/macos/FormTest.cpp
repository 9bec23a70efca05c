// A window with a form: the renderer shows what it is given.
#include "FormFixture.h"

namespace sonvara::test {
namespace {

using FormTest = FormFixture;

TEST_F(FormTest, WindowIsTitledClosableAndMiniaturizableAndAsLargeAsTheForm)
{
    EXPECT_TRUE(closed_->window->isVisible());
    EXPECT_EQ(probe::styleMask(title), 7UL);
    EXPECT_EQ(probe::contentSize(title), (probe::Size{420, 420}));
}

TEST_F(FormTest, ShowsSectionsAndTextsInOrderAndWhole)
{
    EXPECT_EQ(probe::texts(title), (Texts{"One", help, "Two", "Engine"}));
    for (const std::string& text : probe::texts(title)) EXPECT_TRUE(probe::isWhole(title, text)) << text;
}

TEST_F(FormTest, TellsEachTimeItComesOnScreen)
{
    EXPECT_EQ(model_.appeared, 1);
    closed_->window->makeKeyAndOrderFront();
    EXPECT_EQ(model_.appeared, 1) << "it was there";
    probe::miniaturize(title);
    ASSERT_TRUE(probe::runUntil([this] { return !closed_->window->isVisible(); }));
    closed_->window->makeKeyAndOrderFront();
    EXPECT_EQ(model_.appeared, 2);
}

TEST_F(FormTest, TogglesWriteAndFollowTheirBindings)
{
    probe::press(title, "Flip");
    EXPECT_TRUE(model_.flags["Flip"]);
    EXPECT_EQ(probe::button(title, "Flip"), (ButtonState{true, true}));
    EXPECT_EQ(probe::button(title, "Flop"), (ButtonState{true, false}));
    model_.flags["Flop"] = true;
    model_.changed.call();
    EXPECT_EQ(probe::button(title, "Flop"), (ButtonState{true, true}));
}

TEST_F(FormTest, ToggleFallsBackWhenItsBindingRefuses)
{
    model_.refuses = true;
    probe::press(title, "Flip");
    EXPECT_EQ(probe::button(title, "Flip"), (ButtonState{true, false}));
}

TEST_F(FormTest, PickerWritesAndFollowsItsBinding)
{
    EXPECT_EQ(probe::popUp(title).options, (Texts{"Option A", "Option B"}));
    EXPECT_EQ(probe::popUp(title).selected, 1);
    probe::choose(title, 0);
    EXPECT_EQ(model_.choice, "a");
    model_.choice = "unknown";
    model_.isPickerEnabled = false;
    model_.changed.call();
    EXPECT_EQ(probe::popUp(title).selected, -1);
    EXPECT_FALSE(probe::popUp(title).isEnabled);
}

TEST_F(FormTest, ButtonRunsItsActionAndFollowsItsTitle)
{
    probe::press(title, "Show (0)");
    EXPECT_EQ(model_.pressed, (Texts{"row"}));
    model_.buttonTitle = "Show (200)";
    model_.changed.call();
    EXPECT_TRUE(probe::button(title, "Show (200)"));
}

TEST_F(FormTest, ClosingTellsTheDelegateAndLetsTheFormGo)
{
    probe::pressCloseButton(title);
    ASSERT_TRUE(probe::runUntil([this] { return closed_->times == 1; }));
    EXPECT_EQ(probe::countWindows(title), 0);
    EXPECT_TRUE(content_.expired());
}

TEST_F(FormTest, DroppingTheWindowClosesItWithoutTellingTheDelegate)
{
    closed_->window = nullptr;
    EXPECT_EQ(probe::countWindows(title), 0);
    EXPECT_EQ(closed_->times, 0);
    EXPECT_TRUE(content_.expired());
}

}  // namespace
}  // namespace sonvara::test
