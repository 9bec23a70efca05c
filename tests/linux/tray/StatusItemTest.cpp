#include "MenuItems.h"
#include "StatusItemFixture.h"
#include "helpers/PainterHook.h"
#include "platform/linux/tray/DBusMenu.h"

#include <QApplication>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QMenu>
#include <QRegularExpression>

#include <thread>

namespace sonvara::test {

namespace {

using namespace std::chrono_literals;

/// The first pixel's colour in the middle of a picture, as the host reads it.
QColor middle(const NotifierImage& image)
{
    const auto* pixel = image.pixels.constData() + (image.height / 2 * image.width + image.width / 2) * 4;
    const auto channel = [pixel](int at) { return static_cast<unsigned char>(pixel[at]); };
    return {channel(1), channel(2), channel(3), channel(0)};
}

/// The titles in the menu of our own that is open; empty when there is none.
QStringList ownMenu()
{
    QStringList titles;
    if (const auto* open = qobject_cast<QMenu*>(QApplication::activePopupWidget()))
        for (const auto* each : open->actions()) titles.append(each->text());
    return titles;
}

TEST_F(StatusItemTest, RegistersWithAWatcher)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    ASSERT_TRUE(isRegistered(1));
    EXPECT_TRUE(bar->trayAvailable());
    EXPECT_EQ(watcher->property("Status"), "Active");
    EXPECT_EQ(watcher->property("Title"), QApplication::applicationDisplayName());
    EXPECT_EQ(watcher->property("Id"), QCoreApplication::applicationName());
    EXPECT_EQ(watcher->property("Category"), "ApplicationStatus");
    EXPECT_EQ(watcher->property("WindowId"), 0);
    EXPECT_EQ(watcher->property("IconName"), "");
    EXPECT_EQ(qdbus_cast<NotifierToolTip>(watcher->property("ToolTip")).title,
              QApplication::applicationDisplayName());
    const QRegularExpression name(QStringLiteral("^org\\.kde\\.StatusNotifierItem-%1-[1-9][0-9]*$")
                                      .arg(QCoreApplication::applicationPid()));
    EXPECT_TRUE(name.match(watcher->items.last()).hasMatch()) << watcher->items.last().toStdString();
    EXPECT_EQ(watcher->property("ItemIsMenu"), true);  // the left click opens the menu
    EXPECT_EQ(watcher->property("Menu").value<QDBusObjectPath>().path(), "/MenuBar");
}

TEST_F(StatusItemTest, WaitsForAWatcherThatComesLater)
{
    start();
    EXPECT_FALSE(bar->trayAvailable());
    ASSERT_TRUE(eventually([this] { return isTrayMissing; }));
    watcher = std::make_unique<FakeWatcher>();
    ASSERT_TRUE(isRegistered(1));
    EXPECT_TRUE(bar->trayAvailable());
}

TEST_F(StatusItemTest, RegistersAnewWhenTheWatcherComesBack)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    ASSERT_TRUE(isRegistered(1));
    watcher.reset();
    ASSERT_TRUE(eventually([this] { return !bar->trayAvailable(); }));
    watcher = std::make_unique<FakeWatcher>();
    ASSERT_TRUE(isRegistered(1));
    show(ColorRole::systemGreen, false);
    EXPECT_FALSE(watcher->pictures().isEmpty());
}

TEST_F(StatusItemTest, DoesNotRegisterWithAWatcherThatHasNoHost)
{
    watcher = std::make_unique<FakeWatcher>(false);
    start();
    ASSERT_TRUE(eventually([this] { return isTrayMissing; }));
    EXPECT_FALSE(bar->trayAvailable());
    EXPECT_TRUE(watcher->items.isEmpty());
    watcher->setHost(true);
    ASSERT_TRUE(isRegistered(1));
    EXPECT_TRUE(bar->trayAvailable());
    watcher->setHost(false);
    EXPECT_TRUE(eventually([this] { return !bar->trayAvailable(); }));
    watcher->setHost(true);
    ASSERT_TRUE(isRegistered(2));
}

TEST_F(StatusItemTest, RegistersByItsOwnNameWhenTheOtherIsRefused)
{
    watcher = std::make_unique<FakeWatcher>();
    watcher->refusals = 1;
    start();
    ASSERT_TRUE(isRegistered(2));
    EXPECT_TRUE(watcher->items.last().startsWith(':'));
    EXPECT_EQ(watcher->property("Status"), "Active");
    EXPECT_TRUE(bar->trayAvailable());
}

TEST_F(StatusItemTest, TakesARefusalForNoTray)
{
    watcher = std::make_unique<FakeWatcher>();
    watcher->refusals = 2;
    start();
    ASSERT_TRUE(isRegistered(2));
    ASSERT_TRUE(eventually([this] { return isTrayMissing; }));
    EXPECT_FALSE(bar->trayAvailable());
}

TEST_F(StatusItemTest, AsksAndTellsNothingBeforeAnItemIsMade)
{
    bar = std::make_unique<QtStatusBar>([this] { isTrayMissing = true; }, 0ms);
    watcher = std::make_unique<FakeWatcher>(false);
    const auto later = std::chrono::steady_clock::now() + 100ms;
    eventually([&] { return std::chrono::steady_clock::now() > later; });
    EXPECT_FALSE(isTrayMissing);
    EXPECT_EQ(watcher->questions, 0);
}

TEST_F(StatusItemTest, DoesNotMissATrayThatIsThere)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    const auto later = std::chrono::steady_clock::now() + 200ms;
    eventually([&] { return std::chrono::steady_clock::now() > later; });
    EXPECT_FALSE(isTrayMissing);
}

TEST_F(StatusItemTest, HasAPictureForEveryScale)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    show(ColorRole::systemGreen, false);
    ASSERT_TRUE(isRegistered(1));
    QList<int> sizes;
    for (const auto& picture : watcher->pictures()) {
        EXPECT_EQ(picture.width, picture.height);
        EXPECT_EQ(picture.pixels.size(), picture.width * picture.height * 4);
        EXPECT_EQ(middle(picture), RoleColors::of(QApplication::palette()).systemGreen);
        sizes.append(picture.width);
    }
    for (const int side : {16, 24, 32, 22, 33, 44, 36, 48}) EXPECT_TRUE(sizes.contains(side)) << side;
    EXPECT_EQ(sizes.last(), 96) << "what is larger than 48 pixels is scaled down from this";
}

TEST_F(StatusItemTest, TintsATemplateByTheTheme)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    show(ColorRole::systemGreen, true);
    ASSERT_TRUE(isRegistered(1));
    const auto before = QApplication::palette();
    EXPECT_EQ(middle(watcher->pictures().first()), before.color(QPalette::WindowText));
    QPalette dark(QColor(0x30, 0x30, 0x30));
    QApplication::setPalette(dark);
    EXPECT_EQ(middle(watcher->pictures().first()), dark.color(QPalette::WindowText));
    EXPECT_NE(dark.color(QPalette::WindowText), before.color(QPalette::WindowText));
    QApplication::setPalette(before);
}

TEST_F(StatusItemTest, DrawsNothingWhenAnImageIsSwappedAndReadOrTheThemeChanges)
{
    std::shared_ptr<const Image> silent;
    std::shared_ptr<const Image> playing;
    std::thread([&] {
        silent = QtImageRenderer().render(disc(ColorRole::label, true));
        playing = QtImageRenderer().render(disc(ColorRole::systemGreen, false));
    }).join();
    watcher = std::make_unique<FakeWatcher>();
    start();
    item->button()->setImage(silent);
    ASSERT_TRUE(isRegistered(1));
    const auto painters = paintersOfThisThread();
    const auto before = QApplication::palette();
    for (const auto& theme : {before, QPalette(QColor(0x30, 0x30, 0x30))}) {
        QApplication::setPalette(theme);
        item->button()->setImage(silent);
        EXPECT_EQ(middle(watcher->pictures().last()), theme.color(QPalette::WindowText));
        item->button()->setImage(playing);
        EXPECT_EQ(middle(watcher->pictures().last()), RoleColors::of(theme).systemGreen);
    }
    QApplication::setPalette(before);
    EXPECT_EQ(paintersOfThisThread(), painters);
}

TEST_F(StatusItemTest, ShowsASymbol)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    item->button()->setSymbol({"checkmark.circle.fill", ""});
    ASSERT_TRUE(isRegistered(1));
    const auto picture = watcher->pictures().last();
    EXPECT_GT(std::count_if(picture.pixels.begin(), picture.pixels.end(), [](char c) { return c != 0; }),
              1000);
}

TEST_F(StatusItemTest, DrawsItsMenuForAHostThatDoesNot)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    menu->setItems({text("Song 1"), action("Quit", [] {})});
    ASSERT_TRUE(isRegistered(1));
    for (const auto* method : {"Activate", "ContextMenu"}) {
        watcher->call("org.kde.StatusNotifierItem", method, {10, 10});
        EXPECT_EQ(ownMenu(), QStringList({"Song 1", "Quit"})) << method;
        menu->setItems({text("Song 2"), action("Quit", [] {})});
        EXPECT_TRUE(eventually([&] { return ownMenu() == QStringList({"Song 2", "Quit"}); })) << method;
        QApplication::activePopupWidget()->close();
        menu->setItems({text("Song 1"), action("Quit", [] {})});
    }
}

TEST_F(StatusItemTest, RegistersOnceForEachThingThatChanges)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    ASSERT_TRUE(isRegistered(1));
    item->setVisible(true);
    const auto another = bar->makeMenu();
    another->setItems({text("Another"), action("Quit", [] {})});
    item->setMenu(*another);
    ASSERT_TRUE(isRegistered(2));
    watcher->call("org.kde.StatusNotifierItem", "ContextMenu", {10, 10});
    EXPECT_EQ(ownMenu(), QStringList({"Another", "Quit"}));
    QApplication::activePopupWidget()->close();
    const auto second = bar->makeSquareItem();
    second->setMenu(*menu);
    ASSERT_TRUE(isRegistered(3));
    EXPECT_EQ(watcher->property("Status"), "Active");
    EXPECT_EQ(watcher->items.size(), 3);
    item.reset();
}

TEST_F(StatusItemTest, GivesTheHostItsMenu)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    menu->setItems({text("Song 1")});
    ASSERT_TRUE(isRegistered(1));
    const auto path = watcher->property("Menu").value<QDBusObjectPath>().path();
    const auto answer =
        watcher->call("com.canonical.dbusmenu", "GetLayout", {0, -1, QStringList("label")}, path);
    const auto items = qdbus_cast<DBusMenuNode>(answer.arguments().value(1)).children;
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].properties["label"], "Song 1");
}

TEST_F(StatusItemTest, AnItemWithoutAMenuBearsClicks)
{
    watcher = std::make_unique<FakeWatcher>();
    bar = std::make_unique<QtStatusBar>([] {}, 50ms);
    item = bar->makeSquareItem();
    ASSERT_TRUE(isRegistered(1));
    watcher->call("org.kde.StatusNotifierItem", "Activate", {10, 10});
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(StatusItemTest, LeavesTheTrayWhenItIsHiddenOrDropped)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    ASSERT_TRUE(isRegistered(1));
    const auto isThere = [this] {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(watcher->items.last()).value();
    };
    EXPECT_TRUE(isThere());
    item->setVisible(false);
    EXPECT_TRUE(eventually([&] { return !isThere(); }));
    item->setVisible(true);
    ASSERT_TRUE(isRegistered(2));
    EXPECT_TRUE(isThere());
    item.reset();
    EXPECT_TRUE(eventually([&] { return !isThere(); }));
}

}  // namespace

}  // namespace sonvara::test
