// The main function of tests that draw: no screen, and one style whatever the desktop is.
#include <QApplication>
#include <QStyleFactory>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setApplicationName("face-test");
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
