// Needs a session bus of its own.
#include "helpers/EventLoop.h"

#include "platform/linux/system/SingleInstance.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/PosixSystem.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QMap>
#include <future>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

namespace sonvara::test {

namespace {

using namespace std::chrono_literals;

std::future<int> startAgain(const std::map<std::string, std::string>& more = {})
{
    auto variables = PosixEnvironment().variables();
    variables.insert(more.begin(), more.end());
    const auto child = PosixProcessLauncher().make({SECOND_INSTANCE, {}, "/", variables});
    EXPECT_EQ(child->launch(), std::nullopt);
    return std::async(std::launch::async, [child] { return child->waitUntilExit(); });
}

int endOf(std::future<int>& start)
{
    EXPECT_TRUE(eventually([&] { return start.wait_for(0s) == std::future_status::ready; }));
    return start.get();
}

TEST(SingleInstanceTest, ALaterStartWakesTheFirstAndEnds)
{
    int activations = 0;
    SingleInstance first(QDBusConnection::sessionBus(), [&] { ++activations; });
    ASSERT_TRUE(first.claim());
    for (int i = 1; i <= 2; ++i) {
        auto start = startAgain();
        EXPECT_EQ(endOf(start), 1);
        EXPECT_EQ(activations, i);
    }
}

TEST(SingleInstanceTest, ALaterStartHandsOnItsRightToComeToTheFront)
{
    std::vector<QString> tokens;
    SingleInstance first(QDBusConnection::sessionBus(), [&] {
        tokens.push_back(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"));
        qunsetenv("XDG_ACTIVATION_TOKEN");  // as a window that is raised does
    });
    ASSERT_TRUE(first.claim());
    auto fromLauncher = startAgain({{"XDG_ACTIVATION_TOKEN", "kwin-7"}});
    EXPECT_EQ(endOf(fromLauncher), 1);
    auto fromShell = startAgain();
    EXPECT_EQ(endOf(fromShell), 1);
    EXPECT_EQ(tokens, (std::vector<QString>{"kwin-7", ""}));
}

TEST(SingleInstanceTest, ACallWithStrangeArgumentsIsJustAStart)
{
    int activations = 0;
    SingleInstance first(QDBusConnection::sessionBus(), [&] { ++activations; });
    ASSERT_TRUE(first.claim());
    qDBusRegisterMetaType<QMap<QString, QString>>();
    const std::vector<QVariantList> strange{
        {}, {"a text"}, {QVariant::fromValue(QMap<QString, QString>{{"activation-token", "x"}})}};
    auto elsewhere = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "elsewhere");
    for (const auto& arguments : strange) {
        auto call =
            QDBusMessage::createMethodCall(QDBusConnection::sessionBus().baseService(),
                                           "/app/sonvara/Sonvara", "org.freedesktop.Application", "Activate");
        call.setArguments(arguments);
        elsewhere.send(call);
    }
    EXPECT_TRUE(eventually([&] { return activations == 3; }));
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    QDBusConnection::disconnectFromBus("elsewhere");
}

TEST(SingleInstanceTest, AProgramThatHangsIsStillTheFirst)
{
    int activations = 0;
    SingleInstance first(QDBusConnection::sessionBus(), [&] { ++activations; });
    ASSERT_TRUE(first.claim());
    EXPECT_EQ(startAgain().get(), 1);  // while nobody answers here
    EXPECT_TRUE(eventually([&] { return activations > 0; }));
}

TEST(SingleInstanceTest, AStartDuringTheEndOfTheFirstBecomesTheFirst)
{
    SingleInstance first(QDBusConnection::sessionBus(),
                         [] { FAIL() << "it cannot come to the front any more"; });
    ASSERT_TRUE(first.claim());
    first.release();
    auto start = startAgain();  // while the end goes on
    EXPECT_EQ(endOf(start), 0);
}

TEST(SingleInstanceTest, AStartThatHasAskedAFirstWhichEndsBecomesTheFirst)
{
    const QString name = QStringLiteral("ending");
    auto first = std::make_unique<SingleInstance>(
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, name), [] {});
    ASSERT_TRUE(first->claim());
    auto start = startAgain();
    // Its question has come, and is not answered: the event loop has ended.
    EXPECT_EQ(start.wait_for(500ms), std::future_status::timeout);
    first.reset();
    QDBusConnection::disconnectFromBus(name);
    EXPECT_EQ(endOf(start), 0);
}

TEST(SingleInstanceTest, TheNameIsFreeAfterTheEnd)
{
    {
        SingleInstance first(QDBusConnection::sessionBus(), [] {});
        ASSERT_TRUE(first.claim());
    }
    auto start = startAgain();
    EXPECT_EQ(endOf(start), 0);
}

TEST(SingleInstanceTest, WithoutABusEveryProgramIsTheFirst)
{
    SingleInstance instance(QDBusConnection("none"), [] {});
    EXPECT_TRUE(instance.claim());
}

}  // namespace

}  // namespace sonvara::test
