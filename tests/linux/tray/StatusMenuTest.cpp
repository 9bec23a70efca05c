#include "platform/linux/tray/QtStatusMenu.h"

#include "MenuItems.h"
#include "helpers/EventLoop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {

namespace {

using namespace std::chrono_literals;

TEST(StatusMenuTest, RunsTheChosenAction)
{
    QtStatusMenu menu;
    int runs = 0;
    menu.setItems({text("Header"), action("Go", [&] { ++runs; })});
    menu.choose(menu.entries()[1].id);
    EXPECT_EQ(runs, 1);
}

TEST(StatusMenuTest, LeavesDisabledAndMereTextAlone)
{
    QtStatusMenu menu;
    menu.setItems({text("Header"), action("Go", [] { FAIL() << "the item is off"; }, false)});
    menu.choose(menu.entries()[0].id);
    menu.choose(menu.entries()[1].id);
    menu.choose(4711);
}

TEST(StatusMenuTest, LetsAnActionReplaceTheItems)
{
    QtStatusMenu menu;
    menu.setItems({action("Go", [&menu] { menu.setItems({text("Gone")}); })});
    menu.choose(menu.entries()[0].id);
    ASSERT_EQ(menu.entries().size(), 1U);
    EXPECT_EQ(menu.entries()[0].item.title, "Gone");
}

TEST(StatusMenuTest, KeepsTheIdOfAnItemThatStays)
{
    QtStatusMenu menu;
    menu.setItems({text("Song 1"), action("Mute", [] {})});
    const int song = menu.entries()[0].id;
    const int mute = menu.entries()[1].id;
    menu.setItems({text("Song 2"), action("Mute", [] {})});
    EXPECT_EQ(menu.entries()[0].id, song);
    EXPECT_EQ(menu.entries()[1].id, mute);
}

TEST(StatusMenuTest, GivesAnItemThatMeansSomethingElseAnotherId)
{
    MenuItem separator;
    separator.isSeparator = true;
    const auto song = action("Song", [] {});
    for (const auto& [before, after] :
         {std::pair(song, text("Song")), std::pair(text("Song"), song), std::pair(separator, text("")),
          std::pair(text(""), separator), std::pair(separator, song)}) {
        QtStatusMenu menu;
        menu.setItems({before});
        const int id = menu.entries()[0].id;
        EXPECT_GT(id, 0);
        menu.setItems({after});
        EXPECT_GT(menu.entries()[0].id, id);
        const int kept = menu.entries()[0].id;
        menu.setItems({after});
        EXPECT_EQ(menu.entries()[0].id, kept);
    }
}

TEST(StatusMenuTest, CutsTextsThatNoScreenCouldShow)
{
    QtStatusMenu menu;
    const std::string longest(4000, 'x');
    auto styled = text(longest + "x");
    styled.attributedTitle = StyledText{longest + "x", FontRole::body, ColorRole::label};
    menu.setItems({text(longest), styled, text(longest.substr(1) + "\xc3\xa9")});
    EXPECT_EQ(menu.entries()[0].item.title, longest);
    EXPECT_EQ(menu.entries()[1].item.title, longest + "…");
    EXPECT_EQ(menu.entries()[1].item.attributedTitle->text, longest + "…");
    EXPECT_EQ(menu.entries()[2].item.title, longest.substr(1) + "…") << "between two characters";
}

TEST(StatusMenuTest, NeverLetsALateClickRunAnotherAction)
{
    QtStatusMenu menu;
    menu.setItems({action("Mute", [] {})});
    const int mute = menu.entries()[0].id;
    menu.setItems({action("Quit", [] { FAIL() << "the click meant another item"; })});
    menu.choose(mute);
}

TEST(StatusMenuTest, TellsOfTheStepsOfOneChangeOnceAndOfTheLast)
{
    QtStatusMenu menu(1h);
    std::vector<std::string> told;
    QObject::connect(&menu, &QtStatusMenu::itemsChanged, &menu,
                     [&] { told.push_back(menu.entries()[0].item.title); });
    menu.setItems({text("Song 1")});
    runEvents();
    menu.setItems({text("Song 2")});
    runEvents();
    EXPECT_TRUE(told.empty()) << "whoever changes the items has more urgent things to do";
    menu.publish();
    EXPECT_EQ(told, std::vector<std::string>{"Song 2"});
}

TEST(StatusMenuTest, DoesNotTellOfItemsThatLookAsBefore)
{
    QtStatusMenu menu;
    int told = 0;
    QObject::connect(&menu, &QtStatusMenu::itemsChanged, &menu, [&] { ++told; });
    int runs = 0;
    const auto items = [&](int newRuns) {
        MenuItem styled = text("");
        styled.attributedTitle = StyledText{"Song", FontRole::headline, ColorRole::label};
        return std::vector{styled, action("Mute", [&runs, newRuns] { runs = newRuns; })};
    };
    menu.setItems(items(1));
    menu.publish();
    menu.setItems(items(2));
    menu.publish();
    EXPECT_EQ(told, 1) << "every look at the players sets the items anew";
    menu.choose(menu.entries()[1].id);
    EXPECT_EQ(runs, 2) << "the action is the new one nevertheless";

    auto changed = items(2);
    changed[0].attributedTitle->color = ColorRole::secondaryLabel;
    menu.setItems(changed);
    menu.publish();
    EXPECT_EQ(told, 2);
    changed[1].isChecked = true;
    menu.setItems(changed);
    menu.publish();
    EXPECT_EQ(told, 3);
    changed[1].isEnabled = false;
    menu.setItems(changed);
    menu.publish();
    EXPECT_EQ(told, 4);
    changed[0].title = "Song";
    menu.setItems(changed);
    menu.publish();
    EXPECT_EQ(told, 5);
    menu.setItems({changed[0]});
    menu.publish();
    EXPECT_EQ(told, 6);
}

TEST(StatusMenuTest, TellsOfAStreamOfChangesWhileItFlows)
{
    QtStatusMenu menu(50ms);
    bool isTold = false;
    int number = 0;
    QObject::connect(&menu, &QtStatusMenu::itemsChanged, &menu, [&] { isTold = true; });
    EXPECT_TRUE(eventually([&] {
        menu.setItems({text("Song " + std::to_string(++number))});
        return isTold;
    }));
}

TEST(StatusMenuTest, HasToldOfAllWhenItOpens)
{
    QtStatusMenu menu;
    int told = 0;
    QObject::connect(&menu, &QtStatusMenu::itemsChanged, &menu, [&] { ++told; });
    const auto handle = menu.onWillOpen([&] { menu.setItems({text("Now")}); });
    menu.willOpen();
    EXPECT_EQ(told, 1);
    menu.publish();
    EXPECT_EQ(told, 1) << "there is nothing new";
}

TEST(StatusMenuTest, TellsThatItOpensUntilTheHandleIsDropped)
{
    QtStatusMenu menu;
    int openings = 0;
    auto handle = menu.onWillOpen([&] { ++openings; });
    menu.willOpen();
    handle.reset();
    menu.willOpen();
    EXPECT_EQ(openings, 1);
}

}  // namespace

}  // namespace sonvara::test
