// What a start without a display says, and where Qt's own messages go.
#include "platform/linux/system/DisplayCheck.h"

#include <QLoggingCategory>
#include <QString>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

namespace sonvara::test {

namespace {

constexpr std::array variables{"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"};

/// As Qt does when no plugin can be used, with only one of the variables set, or none.
[[noreturn]] void failWith(const char* variable, const std::vector<const char*>& reasons)
{
    for (const char* each : variables) qunsetenv(each);
    if (variable != nullptr) qputenv(variable, "something");
    const DisplayCheck check;
    for (const char* reason : reasons) qWarning("%s", reason);
    qFatal("no plugin");
}

TEST(DisplayCheckDeathTest, SaysThatThereIsNoDisplay)
{
    EXPECT_EXIT(failWith(nullptr, {"could not connect"}), testing::ExitedWithCode(EXIT_FAILURE),
                "^sonvara: There is no display \\(neither WAYLAND_DISPLAY nor DISPLAY is set\\): start the "
                "program in a desktop session\n$");
}

TEST(DisplayCheckDeathTest, NamesTheFirstReasonWhyADisplayCannotBeUsed)
{
    for (const char* variable : variables) {
        EXPECT_EXIT(
            failWith(variable, {" could not connect\n", "and no other"}),
            testing::ExitedWithCode(EXIT_FAILURE),
            "^sonvara: The display cannot be used \\(could not connect\\): start the program in a desktop "
            "session for which Qt's platform plugin is installed\n$")
            << variable;
    }
    EXPECT_EXIT(failWith("DISPLAY", {}), testing::ExitedWithCode(EXIT_FAILURE), "\\(no plugin\\)");
}

std::vector<std::string> told;

void tell(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    told.push_back(std::to_string(type) + " " + context.category + " " + text.toStdString());
}

TEST(DisplayCheckTest, PassesOnWhatWasSaidMeanwhile)
{
    const QLoggingCategory category("qt.qpa.sample");
    auto* const before = qInstallMessageHandler(tell);
    told.clear();
    {
        const DisplayCheck check;
        qCWarning(category, "one");
        qCCritical(category, "two");
        EXPECT_TRUE(told.empty());
    }
    const std::vector<std::string> expected{"1 qt.qpa.sample one", "2 qt.qpa.sample two"};
    EXPECT_EQ(told, expected);
    {
        const DisplayCheck another;
    }
    EXPECT_EQ(told, expected) << "once";
    qCWarning(category, "three");
    EXPECT_EQ(told.size(), 3U) << "the handler before is back";
    qInstallMessageHandler(before);
}

}  // namespace

}  // namespace sonvara::test
