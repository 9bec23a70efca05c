// The tray item of the older kind, as far as it can be seen without a tray.
#include "platform/linux/tray/XEmbedIcon.h"

#include "MenuItems.h"
#include "helpers/EventLoop.h"
#include "platform/linux/tray/QtStatusMenu.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QPixmap>
#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

TEST(XEmbedIconTest, ShowsItsIconAndName)
{
    XEmbedIcon item(nullptr);
    EXPECT_EQ(item.widget().toolTip(), QGuiApplication::applicationDisplayName());
    EXPECT_EQ(item.widget().contextMenu(), nullptr);
    EXPECT_FALSE(item.widget().isVisible());
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    item.setIcon(QIcon(picture));
    EXPECT_TRUE(item.widget().isVisible());
    EXPECT_EQ(item.widget().icon().pixmap(16).toImage().pixelColor(8, 8), QColor(Qt::red));
}

TEST(XEmbedIconTest, OpensItsMenuWithTheLeftButtonToo)
{
    QtStatusMenu menu;
    menu.setItems({text("Song")});
    XEmbedIcon item(&menu);
    ASSERT_NE(item.widget().contextMenu(), nullptr);
    EXPECT_EQ(item.widget().contextMenu()->actions().value(0)->text(), "Song");
    Q_EMIT item.widget().activated(QSystemTrayIcon::MiddleClick);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    QCursor::setPos(200, 100);
    Q_EMIT item.widget().activated(QSystemTrayIcon::Trigger);
    ASSERT_EQ(QApplication::activePopupWidget(), item.widget().contextMenu());
    EXPECT_EQ(QApplication::activePopupWidget()->pos(), QPoint(200, 100));
    QApplication::activePopupWidget()->close();
}

}  // namespace

}  // namespace sonvara::test
