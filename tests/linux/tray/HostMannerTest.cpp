// What hosts do differently, and what they are told for it.
#include "platform/linux/tray/HostManner.h"

#include "MenuItems.h"
#include "StatusItemFixture.h"
#include "platform/linux/tray/QtStatusMenu.h"

#include <QApplication>
#include <QCursor>
#include <QSignalSpy>
#include <QWidget>

#include <string>
#include <utility>

namespace sonvara::test {

namespace {

using HostMannerTest = StatusItemTest;

const std::string wideTitle(300, 'x');

/// The session's name for its desktop as long as it lives.
class Desktop {
public:
    explicit Desktop(const char* names) { qputenv("XDG_CURRENT_DESKTOP", names); }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    ~Desktop()
    {
        before_.isNull() ? qunsetenv("XDG_CURRENT_DESKTOP") : qputenv("XDG_CURRENT_DESKTOP", before_);
    }

private:
    QByteArray before_ = qgetenv("XDG_CURRENT_DESKTOP");
};

TEST_F(HostMannerTest, OpensItsMenuAtThePointerWhateverPlaceTheHostNames)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    menu->setItems({text("Song 1")});
    ASSERT_TRUE(isRegistered(1));
    QCursor::setPos(300, 200);
    watcher->call("org.kde.StatusNotifierItem", "Activate", {0, 28});  // as from a panel's corner
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(QApplication::activePopupWidget()->pos(), QPoint(300, 200));
    QApplication::activePopupWidget()->close();
}

TEST_F(HostMannerTest, RefusesTheClickWhereTheHostThenOpensItsOwnMenu)
{
    const Desktop plasma("KDE");
    watcher = std::make_unique<FakeWatcher>();
    start();
    menu->setItems({text("Song 1")});
    ASSERT_TRUE(isRegistered(1));
    const auto answer = watcher->call("org.kde.StatusNotifierItem", "Activate", {10, 10});
    EXPECT_EQ(answer.errorName(), "org.freedesktop.DBus.Error.UnknownMethod");
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(HostMannerTest, FollowsTheNamesOfTheSession)
{
    struct Case {
        const char* names;
        bool growsItems;
        bool opensMenuOnRefusal;
        bool wrapsToolTip;
    };
    for (const auto& [names, growsItems, opensMenuOnRefusal, wrapsToolTip] :
         {Case{"KDE", false, true, true}, Case{"LXQt", false, false, true}, Case{"MATE", true, false, true},
          Case{"X-Cinnamon", true, false, false}, Case{"ubuntu:GNOME", true, false, true},
          Case{"", true, false, true}}) {
        const Desktop desktop(names);
        EXPECT_EQ(HostManner::ofThisDesktop().growsItems, growsItems) << names;
        EXPECT_EQ(HostManner::ofThisDesktop().opensMenuOnRefusal, opensMenuOnRefusal) << names;
        EXPECT_EQ(HostManner::ofThisDesktop().wrapsToolTip, wrapsToolTip) << names;
    }
}

TEST_F(HostMannerTest, KeepsTheTokenThatLetsItsWindowsComeToTheFront)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    ASSERT_TRUE(isRegistered(1));
    watcher->call("org.kde.StatusNotifierItem", "ProvideXdgActivationToken", {"kwin-5"});
    EXPECT_EQ(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"), "kwin-5");
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

int complaints = 0;

void countComplaints(QtMsgType, const QMessageLogContext&, const QString& message)
{
    if (message.contains("No such signal")) ++complaints;
}

TEST_F(HostMannerTest, LooksForNoOlderTrayWhereThereIsNoXServer)
{
    auto* const before = qInstallMessageHandler(countComplaints);
    start();
    EXPECT_TRUE(eventually([this] { return isTrayMissing; }));
    item.reset();
    qInstallMessageHandler(before);
    EXPECT_EQ(complaints, 0);
}

TEST_F(HostMannerTest, TellsWholeInTheToolTipWhatTheMenuCuts)
{
    watcher = std::make_unique<FakeWatcher>();
    start();
    menu->setItems({text("Song 1"), action("Quit", [] {})});
    ASSERT_TRUE(isRegistered(1));
    const auto details = [this] {
        return qdbus_cast<NotifierToolTip>(watcher->property("ToolTip")).description;
    };
    EXPECT_EQ(details(), "");
    menu->setItems({text("<b>" + wideTitle), action("Quit", [] {})});
    EXPECT_TRUE(eventually([&] { return details() == "&lt;b&gt;" + QString::fromStdString(wideTitle); }));
}

TEST_F(HostMannerTest, BreaksTheToolTipsLinesWhereTheHostDoesNot)
{
    const Desktop cinnamon("X-Cinnamon");
    QtStatusMenu own;
    own.setItems({text(wideTitle)});
    const StatusNotifierItem notifier([] { return NotifierImageList(); }, &own);
    EXPECT_EQ(notifier.details().count('\n'), 4);
    EXPECT_EQ(notifier.details().remove('\n'), QString::fromStdString(wideTitle));
}

TEST_F(HostMannerTest, SaysThatTheToolTipHasChanged)
{
    QtStatusMenu own;
    own.setItems({text(wideTitle)});
    EXPECT_EQ(StatusNotifierItem([] { return NotifierImageList(); }, &own).details().toStdString(),
              wideTitle);
    own.setItems({text("Song 1")});
    const StatusNotifierItem notifier([] { return NotifierImageList(); }, &own);
    const QSignalSpy changes(notifier.findChild<StatusNotifierAdaptor*>(),
                             &StatusNotifierAdaptor::NewToolTip);
    for (const auto& [title, times] : {std::pair("Song 1", 0), std::pair("Song 2", 0),
                                       std::pair(wideTitle.c_str(), 1), std::pair("Song 1", 2)}) {
        own.setItems({text(title)});
        own.publish();
        EXPECT_EQ(changes.size(), times) << title;
    }
}

}  // namespace

}  // namespace sonvara::test
