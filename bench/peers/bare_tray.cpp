// The least that a Qt program with a tray item is: an icon and a menu of as many items as ours has, and
// nothing behind them.
#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QMenu menu;
    for (const auto* text : {"Currently Playing", "No music playing", "DJ Chat:", "None"})
        menu.addAction(QString::fromLatin1(text))->setEnabled(false);
    menu.addSeparator();
    menu.addAction(QStringLiteral("Mute"))->setCheckable(true);
    menu.addSeparator();
    menu.addAction(QStringLiteral("Settings..."));
    menu.addSeparator();
    menu.addAction(QStringLiteral("Quit"), &application, &QCoreApplication::quit);
    QPixmap picture(22, 22);
    picture.fill(Qt::white);
    QSystemTrayIcon item((QIcon(picture)));
    item.setContextMenu(&menu);
    item.show();
    return QApplication::exec();
}
