#include "platform/linux/tray/HostMenuItems.h"

#include "MenuItems.h"
#include "helpers/EventLoop.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFontMetrics>
#include <QSet>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

/// Reads and uses the menu from another connection to the bus, as a tray host does.
class DBusMenuTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.isConnected() && host.isConnected());
        server.registerObject("/MenuBar", &object);
    }
    void TearDown() override
    {
        server.unregisterObject("/MenuBar");
        QDBusConnection::disconnectFromBus("menu-test-host");
    }

    QDBusMessage call(const QString& method, const QVariantList& arguments)
    {
        auto question = QDBusMessage::createMethodCall(server.baseService(), "/MenuBar",
                                                       "com.canonical.dbusmenu", method);
        question.setArguments(arguments);
        QDBusPendingCallWatcher answer(host.asyncCall(question));
        EXPECT_TRUE(eventually([&] { return answer.isFinished(); }));
        EXPECT_FALSE(answer.isError()) << answer.error().message().toStdString();
        return answer.reply();
    }

    DBusMenuNode layout()
    {
        const auto answer = call("GetLayout", {0, -1, QStringList()});
        return qdbus_cast<DBusMenuNode>(answer.arguments().value(1));
    }

    QVariant shown(int position, const char* property)
    {
        const auto items = layout().children;
        return items.value(position).properties.value(property);
    }

    QtStatusMenu menu;
    QObject object;
    DBusMenu* adaptor = new DBusMenu(menu, {}, &object);
    QDBusConnection server = QDBusConnection::sessionBus();
    QDBusConnection host = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "menu-test-host");
};

TEST_F(DBusMenuTest, ShowsItemsInOrder)
{
    MenuItem separator;
    separator.isSeparator = true;
    auto mute = action("Mute", [] {});
    mute.isChecked = true;
    menu.setItems({text("Header"), separator, mute});
    const auto items = layout().children;
    ASSERT_EQ(items.size(), 3);
    EXPECT_EQ(layout().properties, (QVariantMap{{"children-display", "submenu"}}));
    EXPECT_EQ(items[0].properties["label"], "Header");
    EXPECT_EQ(items[0].properties["enabled"], false);
    EXPECT_EQ(items[0].properties["visible"], true);
    EXPECT_EQ(items[1].properties["type"], "separator");
    EXPECT_EQ(items[2].properties["enabled"], true);
    EXPECT_EQ(items[2].properties["toggle-type"], "checkmark");
    EXPECT_EQ(items[2].properties["toggle-state"], 1);
}

TEST_F(DBusMenuTest, ASwitchThatIsOffIsStillASwitch)
{
    auto mute = action("Mute", [] {});
    mute.isChecked = false;
    menu.setItems({mute, action("Quit", [] {})});
    const auto items = layout().children;
    EXPECT_EQ(items[0].properties["toggle-type"], "checkmark");
    EXPECT_EQ(items[0].properties["toggle-state"], 0);
    EXPECT_FALSE(items[1].properties.contains("toggle-type"));
}

TEST_F(DBusMenuTest, EscapesWhatAHostWouldRead)
{
    EXPECT_EQ(dbusMenuLabel("A & B"), "A & B");
    EXPECT_EQ(dbusMenuLabel("snake_case__"), "snake__case____");
    menu.setItems({text("snake_case & <b>bo\u0301ld</b> עברית 🎵")});
    EXPECT_EQ(shown(0, "label"), "snake__case & <b>bo\u0301ld</b> עברית 🎵");
}

MenuItem chat(const std::string& lines)
{
    auto item = text("plain");
    item.attributedTitle = StyledText{lines, FontRole::smallMenu, ColorRole::secondaryLabel};
    return item;
}

/// The labels that a host shows which gives each item one line.
QStringList labelsOfOneLine(const QtStatusMenu& menu)
{
    QStringList labels;
    for (const auto& item : hostItems(menu, false)) labels.append(item.properties["label"].toString());
    return labels;
}

TEST_F(DBusMenuTest, KeepsLineBreaks)
{
    menu.setItems({chat("one\ntwo three")});
    EXPECT_EQ(shown(0, "label"), "one\ntwo three");
    EXPECT_EQ(cutTexts(menu, true), "");
}

TEST_F(DBusMenuTest, CutsInTheMiddleWhatIsWiderThanAMenuBears)
{
    for (const auto& [letter, kept] : {std::pair{"x", 54}, {"漢", 27}, {"ש", 54}, {"🎵", 27}}) {
        const auto title = "first" + QString(letter).repeated(297) + "last";
        menu.setItems(
            {text(title.toStdString()), chat("one\n" + title.toStdString()), action("Quit", [] {})});
        const auto label = shown(0, "label").toString();
        EXPECT_EQ(label.count(letter), kept);
        EXPECT_TRUE(label.startsWith("first") && label.endsWith("last")) << label.toStdString();
        EXPECT_EQ(shown(1, "label"), "one\n" + label);
        EXPECT_EQ(menu.entries()[0].item.title, title.toStdString()) << "what is shown is cut, not the value";
        EXPECT_EQ(cutTexts(menu, true), title + "\none\n" + title);
    }
}

TEST_F(DBusMenuTest, TellsWholeInLinesThatFitTheScreenWhatItCutsUnlessTheHostWraps)
{
    const auto words = QString("word ").repeated(30) + "end";
    menu.setItems({text(words.toStdString()), chat("one\n" + words.toStdString())});
    const auto line = QString("word ").repeated(12) + "word";
    const auto wrapped = line + "\n" + line + "\nword word word word end";
    EXPECT_EQ(cutTexts(menu, true), words + "\none\n" + words);
    EXPECT_EQ(cutTexts(menu, false), wrapped + "\none\n" + wrapped);
}

TEST_F(DBusMenuTest, LeavesRoomForTheChoicesBelowAVeryLongText)
{
    menu.setItems({chat(QString("line\n").repeated(30).toStdString())});
    EXPECT_EQ(shown(0, "label"), QString("line\n").repeated(9) + "…");
    EXPECT_EQ(cutTexts(menu, true).count('\n'), 30);
}

TEST_F(DBusMenuTest, GivesEachLineAnItemWhereTheHostShowsOneLineOnly)
{
    menu.setItems({chat("one\ntwo\nthree"), action("Quit", [] { FAIL() << "nobody chose it"; })});
    EXPECT_EQ(labelsOfOneLine(menu), QStringList({"one", "two", "three", "Quit"}));
    const auto items = hostItems(menu, false);
    QSet<int> ids;
    for (const auto& item : items) {
        ids.insert(item.id);
        EXPECT_GT(item.id, 0);
    }
    EXPECT_EQ(ids.size(), 4);
    EXPECT_EQ(items[2].properties["enabled"], false);
    EXPECT_EQ(items[3].id, menu.entries()[1].id);
    menu.choose(items[2].id);
}

TEST_F(DBusMenuTest, ALineThatBeginsFromRightToLeftDoesNotTurnItsItem)
{
    const QString song = "שיר - Song";
    menu.setItems({text(song.toStdString()), chat("Now:\n" + song.toStdString()), text("Song - שיר")});
    EXPECT_EQ(shown(0, "label"), QChar(0x200E) + song);
    EXPECT_EQ(shown(1, "label"), "Now:\n" + (QChar(0x200E) + song));
    EXPECT_EQ(shown(2, "label"), "Song - שיר");
    EXPECT_EQ(cutTexts(menu, true), "") << "the mark is no cut";
}

TEST_F(DBusMenuTest, ALineKeepsItsOwnDirectionWhereAllRunsFromRightToLeft)
{
    const QString song = "שיר - Song";
    menu.setItems({text(song.toStdString())});
    EXPECT_EQ(adaptor->textDirection(), "ltr");
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(adaptor->textDirection(), "rtl");
    EXPECT_EQ(hostItems(menu, true)[0].properties["label"], song);
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(DBusMenuTest, SpeaksTheThirdVersionOfTheProtocol)
{
    EXPECT_EQ(adaptor->version(), 3U);
    EXPECT_EQ(adaptor->status(), "normal");
    EXPECT_TRUE(adaptor->iconThemePath().isEmpty());
}

TEST_F(DBusMenuTest, OnlyTheMenuItselfOpens)
{
    menu.setItems({text("Song")});
    const int item = layout().children[0].id;
    int openings = 0;
    const auto handle = menu.onWillOpen([&] { ++openings; });
    for (const char* type : {"opened", "closed", "hovered"})
        call("Event", {item, type, QVariant::fromValue(QDBusVariant(0)), 0U});
    call("Event", {0, "hovered", QVariant::fromValue(QDBusVariant(0)), 0U});
    EXPECT_EQ(openings, 0);
    call("AboutToShow", {0});
    call("Event", {item, "closed", QVariant::fromValue(QDBusVariant(0)), 0U});
    call("Event", {0, "opened", QVariant::fromValue(QDBusVariant(0)), 0U});
    EXPECT_EQ(openings, 1);
    call("Event", {0, "opened", QVariant::fromValue(QDBusVariant(0)), 0U});
    EXPECT_EQ(openings, 2) << "another one";
}

TEST_F(DBusMenuTest, RunsTheClickedAction)
{
    int runs = 0;
    menu.setItems({action("Go", [&] { ++runs; })});
    const int id = layout().children[0].id;
    call("Event", {id, "clicked", QVariant::fromValue(QDBusVariant(0)), 0U});
    call("Event", {id, "hovered", QVariant::fromValue(QDBusVariant(0)), 0U});
    EXPECT_EQ(runs, 1);
}

TEST_F(DBusMenuTest, RunsGroupedEventsAndNamesUnknownItems)
{
    int runs = 0;
    menu.setItems({action("Go", [&] { ++runs; })});
    const int id = layout().children[0].id;
    const DBusMenuEventList events{{id, "clicked", 0, 0}, {4711, "clicked", 0, 0}};
    const auto answer = call("EventGroup", {QVariant::fromValue(events)});
    EXPECT_EQ(qdbus_cast<QList<int>>(answer.arguments().value(0)), QList<int>{4711});
    EXPECT_EQ(runs, 1);
}

TEST_F(DBusMenuTest, IsUpToDateWhenItOpens)
{
    int openings = 0;
    const auto handle =
        menu.onWillOpen([&] { menu.setItems({text("opening " + std::to_string(++openings))}); });
    EXPECT_EQ(call("AboutToShow", {0}).arguments().value(0), true);
    EXPECT_EQ(shown(0, "label"), "opening 1");
    call("Event", {0, "opened", QVariant::fromValue(QDBusVariant(0)), 0U});  // the same opening
    call("Event", {0, "closed", QVariant::fromValue(QDBusVariant(0)), 0U});
    EXPECT_EQ(openings, 1);
    call("Event",
         {0, "opened", QVariant::fromValue(QDBusVariant(0)), 0U});  // a host that does not ask before
    EXPECT_EQ(openings, 2);
}

TEST_F(DBusMenuTest, OpensInAGroupOfWhichItKnowsItselfAndItsItems)
{
    menu.setItems({text("before")});
    const int item = layout().children[0].id;
    const auto handle = menu.onWillOpen([&] { menu.setItems({text("after")}); });
    const auto answer = call("AboutToShowGroup", {QVariant::fromValue(QList<int>{item, 4711, 0})});
    EXPECT_EQ(qdbus_cast<QList<int>>(answer.arguments().value(0)), QList<int>{0});
    EXPECT_EQ(qdbus_cast<QList<int>>(answer.arguments().value(1)), QList<int>{4711});
    EXPECT_EQ(shown(0, "label"), "after");
}

TEST_F(DBusMenuTest, AsksForNoUpdateWhenNothingChanged)
{
    const auto handle = menu.onWillOpen([&] { menu.setItems({text("the same")}); });
    call("AboutToShow", {0});
    EXPECT_EQ(call("AboutToShow", {0}).arguments().value(0), false);
}

TEST_F(DBusMenuTest, TellsOfChangedPropertiesAlone)
{
    auto mute = action("Mute", [] {});
    mute.isChecked = false;
    menu.setItems({text("Song 1"), mute});
    menu.publish();
    const QSignalSpy layouts(adaptor, &DBusMenu::LayoutUpdated);
    const QSignalSpy properties(adaptor, &DBusMenu::ItemsPropertiesUpdated);
    mute.isChecked = true;
    menu.setItems({text("Song 2"), mute});
    menu.publish();
    EXPECT_EQ(layouts.size(), 0);
    ASSERT_EQ(properties.size(), 1);
    const auto updated = properties[0][0].value<DBusMenuPropertiesList>();
    ASSERT_EQ(updated.size(), 2);
    EXPECT_EQ(updated[0].properties, (QVariantMap{{"label", "Song 2"}}));
    EXPECT_EQ(updated[1].properties, (QVariantMap{{"toggle-state", 1}}));
    mute.isChecked.reset();
    menu.setItems({text("Song 2"), mute});
    menu.publish();
    const auto removed = properties[1][1].value<DBusMenuKeysList>();
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0].keys, (QStringList{"toggle-state", "toggle-type"}));
}

TEST_F(DBusMenuTest, TellsOfANewLayout)
{
    menu.setItems({text("one")});
    menu.publish();
    const QSignalSpy layouts(adaptor, &DBusMenu::LayoutUpdated);
    const auto before = call("GetLayout", {0, 0, QStringList()}).arguments().value(0).toUInt();
    menu.setItems({text("one"), text("two")});
    menu.publish();
    ASSERT_EQ(layouts.size(), 1);
    EXPECT_EQ(layouts[0][0].toUInt(), before + 1);
    EXPECT_EQ(layouts[0][1].toInt(), 0);
    EXPECT_EQ(layouts[0][0].toUInt(), call("GetLayout", {0, 0, QStringList()}).arguments().value(0).toUInt());
}

TEST_F(DBusMenuTest, GivesSingleProperties)
{
    menu.setItems({text("one"), text("two")});
    const int id = layout().children[1].id;
    const auto answer =
        call("GetGroupProperties", {QVariant::fromValue(QList<int>{id}), QStringList{"label"}});
    const auto items = qdbus_cast<DBusMenuPropertiesList>(answer.arguments().value(0));
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].properties, (QVariantMap{{"label", "two"}}));
    const auto single = call("GetProperty", {id, "label"}).arguments().value(0);
    EXPECT_EQ(single.value<QDBusVariant>().variant(), "two");
    for (const auto& [unknown, name] : {std::pair(4711, "label"), std::pair(id, "nonsense")}) {
        const auto none = call("GetProperty", {unknown, name}).arguments().value(0);
        EXPECT_EQ(none.value<QDBusVariant>().variant(), "");
    }
}

DBusMenuPropertiesList group(const QDBusMessage& answer)
{
    return qdbus_cast<DBusMenuPropertiesList>(answer.arguments().value(0));
}

TEST_F(DBusMenuTest, GivesThePropertiesOfAllAndOfItself)
{
    menu.setItems({text("one"), text("two")});
    const QVariantMap own{{"children-display", "submenu"}};
    const auto all = group(call("GetGroupProperties", {QVariant::fromValue(QList<int>{}), QStringList()}));
    ASSERT_EQ(all.size(), 3);
    EXPECT_EQ(all[0].id, 0);
    EXPECT_EQ(all[0].properties, own);
    EXPECT_EQ(all[2].properties["label"], "two");
    const QStringList names{"label", "nonsense"};
    const auto self = group(call("GetGroupProperties", {QVariant::fromValue(QList<int>{0}), names}));
    ASSERT_EQ(self.size(), 1);
    EXPECT_TRUE(self[0].properties.isEmpty());
    const auto labels =
        group(call("GetGroupProperties", {QVariant::fromValue(QList<int>{all[1].id}), names}));
    ASSERT_EQ(labels.size(), 1);
    EXPECT_EQ(labels[0].properties, (QVariantMap{{"label", "one"}}));
}

TEST_F(DBusMenuTest, GivesTheLayoutOfAPart)
{
    menu.setItems({text("one"), text("two")});
    const int two = layout().children[1].id;
    const auto part = [this](int id, int depth, const QStringList& names) {
        return qdbus_cast<DBusMenuNode>(call("GetLayout", {id, depth, names}).arguments().value(1));
    };
    EXPECT_EQ(part(two, -1, {"label"}).properties, (QVariantMap{{"label", "two"}}));
    EXPECT_EQ(part(two, -1, {}).id, two);
    EXPECT_TRUE(part(two, -1, {}).children.isEmpty());
    EXPECT_TRUE(part(4711, -1, {}).properties.isEmpty());
    EXPECT_TRUE(part(0, 0, {}).children.isEmpty());
    EXPECT_EQ(part(0, 1, {}).children.size(), 2);
    EXPECT_TRUE(part(0, -1, {"label"}).properties.isEmpty());
    EXPECT_EQ(part(0, -1, {"label"}).children[0].properties, (QVariantMap{{"label", "one"}}));
}

}  // namespace

}  // namespace sonvara::test
