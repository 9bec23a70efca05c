#include "platform/linux/tray/TrayMenuView.h"

#include "MenuItems.h"
#include "helpers/EventLoop.h"

#include "platform/linux/style/StylePalette.h"

#include <QLabel>
#include <QPointer>
#include <QStyle>
#include <QWidgetAction>
#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

QLabel* labelOf(QAction* action)
{
    const auto* widgetAction = qobject_cast<QWidgetAction*>(action);
    return widgetAction == nullptr ? nullptr : qobject_cast<QLabel*>(widgetAction->defaultWidget());
}

class TrayMenuViewTest : public testing::Test {
protected:
    void TearDown() override { runEvents(); }

    QtStatusMenu menu;
    TrayMenuView view{menu};
};

TEST_F(TrayMenuViewTest, ShowsTitlesAsTheyAre)
{
    menu.setItems({action("A & B", [] {}), action("snake_case", [] {}), action("<b>x</b>", [] {})});
    menu.publish();
    const auto actions = view.widget().actions();
    ASSERT_EQ(actions.size(), 3);
    EXPECT_EQ(actions[0]->text(), "A && B");  // two stand for one
    EXPECT_EQ(actions[1]->text(), "snake_case");
    EXPECT_EQ(actions[2]->text(), "<b>x</b>");
}

TEST_F(TrayMenuViewTest, BreaksTheLinesOfAStyledText)
{
    auto item = text("");
    item.attributedTitle = StyledText{"<b>one</b>\ntwo", FontRole::smallMenu, ColorRole::secondaryLabel};
    menu.setItems({item});
    menu.publish();
    const auto* label = labelOf(view.widget().actions()[0]);
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), "<b>one</b>\ntwo");
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
    EXPECT_LT(label->font().pointSizeF(), view.widget().font().pointSizeF());
    EXPECT_GE(label->sizeHint().height(), 2 * label->fontMetrics().height());
}

TEST_F(TrayMenuViewTest, WrapsATitleThatIsTooLongForAScreen)
{
    menu.setItems({text(std::string(300, 'm')), text("short")});
    menu.publish();
    const auto actions = view.widget().actions();
    EXPECT_LT(view.widget().sizeHint().width(), 640);
    const auto* label = labelOf(actions[0]);
    EXPECT_GT(label->heightForWidth(label->width()), 4 * labelOf(actions[1])->sizeHint().height());
    EXPECT_EQ(actions[0]->text(), QString(300, u'm'));
    EXPECT_EQ(label->minimumWidth(), 480);
    EXPECT_EQ(label->maximumWidth(), 480);
    EXPECT_EQ(label->text(),
              QStringList(12, QString(24, u'm')).join(QChar(0x200B)) + QChar(0x200B) + QString(12, u'm'));
    EXPECT_FALSE(labelOf(actions[1])->wordWrap());
}

TEST_F(TrayMenuViewTest, BreaksNoWordThatFitsAndNoCharacter)
{
    const QString letter = "e\u0301";
    const auto words = (QString(24, u'm') + u' ').repeated(12);
    menu.setItems({text((words + letter.repeated(25)).toStdString())});
    menu.publish();
    EXPECT_EQ(labelOf(view.widget().actions()[0])->text(),
              words + letter.repeated(24) + QChar(0x200B) + letter);
}

TEST_F(TrayMenuViewTest, ALabelStandsWhereTheTextsOfTheChoicesDo)
{
    auto isOn = text("on");
    isOn.isEnabled = true;
    menu.setItems({text("off"), isOn});
    menu.publish();
    const auto actions = view.widget().actions();
    const int inset =
        view.widget().style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &view.widget()) + 12;
    EXPECT_EQ(labelOf(actions[0])->contentsMargins(), QMargins(inset, 3, inset, 3));
    const auto colors = RoleColors::of(view.widget().palette());
    EXPECT_EQ(labelOf(actions[0])->palette().color(QPalette::WindowText), colors.secondaryLabel);
    EXPECT_EQ(labelOf(actions[0])->font(), roleFont(FontRole::body));
    EXPECT_EQ(labelOf(actions[1])->palette().color(QPalette::WindowText), colors.label);
}

TEST_F(TrayMenuViewTest, KeepsNothingOfTheItemsBefore)
{
    menu.setItems({text("Song 1"), action("Quit", [] {})});
    menu.publish();
    const QPointer<QAction> song = view.widget().actions()[0];
    const QPointer<QAction> quit = view.widget().actions()[1];
    menu.setItems({text("Song 2")});
    menu.publish();
    EXPECT_EQ(view.widget().actions().size(), 1);
    runEvents();
    EXPECT_EQ(song, nullptr);
    EXPECT_EQ(quit, nullptr);
}

TEST_F(TrayMenuViewTest, ShowsStateAndSeparators)
{
    auto mute = action("Mute", [] {});
    mute.isChecked = true;
    MenuItem separator;
    separator.isSeparator = true;
    auto off = action("Quit", [] {}, false);
    menu.setItems({mute, separator, text("Off"), off});
    menu.publish();
    const auto actions = view.widget().actions();
    EXPECT_TRUE(actions[0]->isChecked());
    EXPECT_FALSE(actions[2]->isCheckable());
    EXPECT_TRUE(actions[0]->isCheckable());
    EXPECT_TRUE(actions[0]->isEnabled());
    EXPECT_FALSE(actions[3]->isCheckable());
    EXPECT_FALSE(actions[3]->isEnabled());
    EXPECT_FALSE(actions[3]->isSeparator());
    EXPECT_TRUE(actions[1]->isSeparator());
    EXPECT_FALSE(actions[2]->isEnabled());
}

TEST_F(TrayMenuViewTest, IsUpToDateWhenItOpens)
{
    int openings = 0;
    const auto handle =
        menu.onWillOpen([&] { menu.setItems({text("opening " + std::to_string(++openings))}); });
    view.popUp({10, 10});
    EXPECT_EQ(view.widget().actions()[0]->text(), "opening 1");
    view.widget().close();
}

TEST_F(TrayMenuViewTest, ChoosesAnItemThatReplacesTheItems)
{
    menu.setItems({action("Mute", [this] { menu.setItems({text("muted")}); })});
    menu.publish();
    view.widget().actions()[0]->trigger();
    menu.publish();
    ASSERT_EQ(view.widget().actions().size(), 1);
    EXPECT_EQ(view.widget().actions()[0]->text(), "muted");
}

}  // namespace

}  // namespace sonvara::test
