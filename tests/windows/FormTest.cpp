// A window with a form: whichever renderer draws it, it shows what it is given and does what it is told.
#include "WindowFixture.h"

namespace sonvara::test {

namespace {

using FormTest = WindowFixture;

TEST_F(FormTest, IsNotShownBeforeItIsAsked)
{
    EXPECT_FALSE(owner_->window->isVisible());
    EXPECT_FALSE(probe::isShown(title));
    EXPECT_EQ(sample_.appearances, 0);
}

TEST_F(FormTest, IsAsLargeAsTheForm)
{
    show();
    EXPECT_TRUE(owner_->window->isVisible());
    EXPECT_EQ(probe::contentSize(title), (probe::Size{420, 420}));
}

TEST_F(FormTest, ShowsSectionsAndTextsInOrderAndWhole)
{
    show();
    EXPECT_EQ(probe::texts(title), (Texts{"One & only", SampleForm::help, "Two", "Engine"}));
    for (const auto& text : probe::texts(title)) EXPECT_TRUE(probe::isWhole(title, text)) << text;
}

TEST_F(FormTest, TellsOnceThatItComesOnScreen)
{
    show();
    EXPECT_EQ(sample_.appearances, 1);
    show();
    EXPECT_EQ(sample_.appearances, 1) << "it was there";
}

TEST_F(FormTest, IsNotVisibleWhileMiniaturised)
{
    show();
    probe::miniaturize(title);
    EXPECT_TRUE(probe::runUntil([this] { return !owner_->window->isVisible(); }));
    show();
    EXPECT_TRUE(owner_->window->isVisible());
}

TEST_F(FormTest, TogglesWriteAndFollowTheirBindings)
{
    show();
    EXPECT_EQ(probe::button(title, switchTitle), (ButtonState{true, true}));
    probe::press(title, switchTitle);
    EXPECT_FALSE(sample_.isOn);
    EXPECT_EQ(probe::button(title, switchTitle), (ButtonState{true, false}));
    sample_.isOn = true;
    sample_.changed.call();
    EXPECT_EQ(probe::button(title, switchTitle), (ButtonState{true, true}));
}

TEST_F(FormTest, ToggleFallsBackWhenItsBindingRefuses)
{
    show();
    probe::press(title, "Stubborn");
    EXPECT_EQ(probe::button(title, "Stubborn"), (ButtonState{true, false}));
}

TEST_F(FormTest, PickerWritesAndFollowsItsBinding)
{
    show();
    EXPECT_EQ(probe::popUp(title).options, (Texts{"First", "Second"}));
    EXPECT_EQ(probe::popUp(title).selected, 1);
    EXPECT_TRUE(probe::popUp(title).isEnabled);
    probe::choose(title, 0);
    EXPECT_EQ(sample_.choice, "a");
    sample_.canChoose = false;
    sample_.changed.call();
    EXPECT_FALSE(probe::popUp(title).isEnabled);
}

TEST_F(FormTest, PickerShowsNoChoiceForATagThatIsNoOption)
{
    show();
    sample_.choice = "other";
    sample_.changed.call();
    EXPECT_EQ(probe::popUp(title).selected, -1);
    EXPECT_EQ(sample_.choice, "other");
}

TEST_F(FormTest, ButtonRunsItsActionAndFollowsItsTitle)
{
    show();
    probe::press(title, "View log (0)");
    EXPECT_EQ(sample_.presses, 1);
    sample_.presses = 200;
    sample_.changed.call();
    EXPECT_TRUE(probe::button(title, "View log (200)"));
}

TEST_F(FormTest, ClosingTellsTheDelegateAndLetsTheFormGo)
{
    show();
    probe::pressCloseButton(title);
    ASSERT_TRUE(probe::runUntil([this] { return owner_->closings == 1; }));
    EXPECT_EQ(probe::countWindows(title), 0);
    EXPECT_TRUE(formGoes());
    sample_.changed.call();  // nobody listens any more
}

TEST_F(FormTest, DroppingTheWindowClosesItWithoutTellingTheDelegate)
{
    show();
    owner_->window = nullptr;
    EXPECT_EQ(probe::countWindows(title), 0);
    EXPECT_EQ(owner_->closings, 0);
    EXPECT_TRUE(formGoes());
}

}  // namespace

}  // namespace sonvara::test
