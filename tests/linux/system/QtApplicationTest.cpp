#include "platform/linux/system/QtApplication.h"

#include <QCloseEvent>
#include <QTimer>
#include <QWidget>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <utility>

namespace sonvara::test {

namespace {

class Delegate final : public ApplicationDelegate {
public:
    explicit Delegate(std::function<void()> launched) : launched_(std::move(launched)) {}
    void applicationDidFinishLaunching() override
    {
        ++count;
        launched_();
    }
    void applicationDidReopen() override { ++reopened; }
    int count = 0;
    int reopened = 0;

private:
    std::function<void()> launched_;
};

class StubbornWindow final : public QWidget {
protected:
    void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

int runWith(QtApplication& application, std::function<void()> launched)
{
    const auto delegate = std::make_shared<Delegate>(std::move(launched));
    application.setDelegate(delegate);
    const int status = application.run();
    EXPECT_EQ(delegate->count, 1);
    return status;
}

TEST(QtApplicationTest, TellsTheDelegateInsideTheLoopAndEndsOnRequest)
{
    QtApplication application("test");
    bool looped = false;
    EXPECT_EQ(runWith(application,
                      [&] {
                          QTimer::singleShot(0, [&] {
                              looped = true;
                              application.terminate();
                          });
                      }),
              0);
    EXPECT_TRUE(looped);
}

TEST(QtApplicationTest, HoldsItsDelegateWeakly)
{
    QtApplication application("test");
    bool launched = false;
    application.setDelegate(std::make_shared<Delegate>([&] { launched = true; }));
    QTimer::singleShot(0, [&] { application.terminate(); });
    EXPECT_EQ(application.run(), 0);
    EXPECT_FALSE(launched);
}

TEST(QtApplicationTest, ARequestBeforeTheLoopCounts)
{
    QtApplication application("test");
    application.terminate();
    EXPECT_EQ(application.run(), 0);
}

TEST(QtApplicationTest, PassesOnThatTheUserAsksForItAgain)
{
    QtApplication application("test");
    const auto delegate = std::make_shared<Delegate>([&] { application.terminate(); });
    application.setDelegate(delegate);
    application.reopen();
    EXPECT_EQ(delegate->reopened, 0);
    EXPECT_EQ(application.run(), 0);
    EXPECT_EQ(delegate->reopened, 1);
}

TEST(QtApplicationTest, AWishToSeeItAgainIsPassedOnAtOnceWhileItRuns)
{
    QtApplication application("test");
    std::shared_ptr<Delegate> delegate;
    delegate = std::make_shared<Delegate>([&] {
        EXPECT_EQ(delegate->reopened, 0);
        application.reopen();
        EXPECT_EQ(delegate->reopened, 1);
        application.terminate();
    });
    application.setDelegate(delegate);
    EXPECT_EQ(application.run(), 0);
    EXPECT_EQ(delegate->reopened, 1);
}

TEST(QtApplicationTest, IsKnownToTheDesktopByItsName)
{
    const QtApplication application("test");
    EXPECT_EQ(QApplication::applicationName(), "Sonvara");
    EXPECT_EQ(QApplication::applicationDisplayName(), "Sonvara");
    EXPECT_EQ(QApplication::desktopFileName(), SONVARA_IDENTIFIER);
    EXPECT_FALSE(qEnvironmentVariableIsSet("QT_XCB_NO_MITSHM")) << "what is started inherits it not";
}

TEST(QtApplicationTest, ClosingTheLastWindowDoesNotEndTheProgram)
{
    QtApplication application("test");
    bool wentOn = false;
    QWidget window;
    EXPECT_EQ(runWith(application,
                      [&] {
                          window.show();
                          application.activateIgnoringOtherApps();
                          window.close();
                          QTimer::singleShot(50, [&] {
                              wentOn = true;
                              application.terminate();
                          });
                      }),
              0);
    EXPECT_TRUE(wentOn);
}

TEST(QtApplicationTest, AWindowCannotRefuseTheEnd)
{
    QtApplication application("test");
    StubbornWindow window;
    EXPECT_EQ(runWith(application,
                      [&] {
                          window.show();
                          application.terminate();
                      }),
              0);
}

TEST(QtApplicationTest, EndsOnTheSignalsThatAskForIt)
{
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        QtApplication application("test");
        EXPECT_EQ(runWith(application, [number] { std::raise(number); }), 0) << number;
    }
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        EXPECT_EQ(std::signal(number, SIG_DFL), SIG_DFL) << number;
}

TEST(QtApplicationTest, LeavesASignalIgnored)
{
    std::signal(SIGHUP, SIG_IGN);
    {
        QtApplication application("test");
        EXPECT_EQ(runWith(application,
                          [&] {
                              std::raise(SIGHUP);
                              application.terminate();
                          }),
                  0);
    }
    EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST(QtApplicationDeathTest, ASecondSignalEndsAProgramThatHangs)
{
    EXPECT_EXIT(
        {
            const QtApplication application("test");
            std::raise(SIGTERM);
            std::raise(SIGTERM);
        },
        testing::KilledBySignal(SIGTERM), "");
}

}  // namespace

}  // namespace sonvara::test

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
