// The main function of tests that draw: no screen, and one style whatever the desktop is.
#include <QApplication>
#include <QStyleFactory>
#include <gtest/gtest.h>

// For a thread sanitizer. The bus's own thread looks up what an exported object understands, under a lock of Qt's; Qt is
// not built with the sanitizer, so that does not see the lock when the object's memory is used again.
extern "C" const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions()
{
    return "race:*::metaObject\n";
}

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
