// A tray item with a menu of given titles, for tests with real tray hosts: tray_sample TITLE...
// The first title stands as a styled text, too. Each opening is counted in the last item, which prints its
// title and ends the program when it is chosen.
#include "platform/linux/style/QtImageRenderer.h"
#include "platform/linux/tray/QtStatusBar.h"
#include "ui/StatusIcon.h"

#include <QApplication>

#include <iostream>

int main(int argc, char** argv)
{
    using namespace sonvara;
    QApplication application(argc, argv);
    QApplication::setApplicationName("TraySample");
    QApplication::setQuitOnLastWindowClosed(false);

    QtStatusBar bar([] { std::cout << "no tray" << std::endl; });
    const auto menu = bar.makeMenu();
    const auto item = bar.makeSquareItem();
    int openings = 0;
    const auto fill = [&] {
        std::vector<MenuItem> items(1);
        items[0].attributedTitle =
            StyledText{argc > 1 ? argv[1] : "", FontRole::smallMenu, ColorRole::secondaryLabel};
        for (int i = 1; i < argc; ++i) {
            items.emplace_back();
            items.back().title = argv[i];
        }
        MenuItem last;
        last.title = "Opened " + std::to_string(openings);
        last.isEnabled = true;
        last.isChecked = true;
        last.action = [title = last.title] {
            std::cout << title << std::endl;
            QApplication::exit(0);
        };
        items.push_back(last);
        menu->setItems(items);
    };
    fill();
    const auto opening = menu->onWillOpen([&] {
        ++openings;
        fill();
    });
    item->button()->setImage(QtImageRenderer().render(statusIcon(true)));
    item->setMenu(*menu);
    return QApplication::exec();
}
