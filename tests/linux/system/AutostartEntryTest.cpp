// The text of a desktop entry: as it is written, and as others write it.
#include "platform/linux/system/AutostartEntry.h"

#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

std::string written(const QString& name, const QString& program, const QString& icon)
{
    return autostartText({name, program, icon}).toStdString();
}

AutostartState readIn(const QByteArray& group, const QByteArray& lines)
{
    return readAutostart("[" + group + "]\n" + lines + "\n");
}

QString programOf(const QByteArray& command)
{
    return readIn("Desktop Entry", "Exec=" + command).program;
}

TEST(AutostartEntryTest, IsWrittenAsDesktopsReadIt)
{
    EXPECT_EQ(written("Sample", "/opt/sample", "org.example.Sample"),
              "[Desktop Entry]\nType=Application\nName=Sample\nExec=/opt/sample\nTryExec=/opt/sample\n"
              "Icon=org.example.Sample\nTerminal=false\n");
}

TEST(AutostartEntryTest, LineEndsBlanksAndBackslashesAreEscaped)
{
    EXPECT_EQ(written(" a b\tc\nd\re\\f", "/opt/100%", " icon"),
              "[Desktop Entry]\nType=Application\nName=\\sa "
              "b\\tc\\nd\\re\\\\f\nExec=/opt/100%%\nTryExec=/opt/100%\n"
              "Icon=\\sicon\nTerminal=false\n");
}

TEST(AutostartEntryTest, AProgramWithAReservedCharacterIsQuoted)
{
    for (const QChar reserved : QStringLiteral(" \t\n\"'\\><~|&;$*?#()`")) {
        const auto program = QStringLiteral("/opt/a") + reserved + QStringLiteral("b");
        const auto text = autostartText({"Sample", program, "icon"});
        EXPECT_TRUE(text.contains("\nExec=\"/opt/a")) << text.toStdString();
        EXPECT_EQ(readAutostart(text).program, program);
    }
}

TEST(AutostartEntryTest, TheFirstArgumentIsTheProgram)
{
    EXPECT_EQ(programOf("sh -c true"), "sh");
    EXPECT_EQ(programOf("  \"/a b/c\" d"), "/a b/c");
    EXPECT_EQ(programOf("/a\" b\"c d"), "/a bc");
    EXPECT_EQ(programOf("\"/a\\\\$b\""), "/a$b");
    EXPECT_EQ(programOf("/100%%"), "/100%");
    EXPECT_EQ(programOf(""), "");
}

TEST(AutostartEntryTest, EscapesAreRead)
{
    EXPECT_EQ(programOf("\"/a\\sb\\tc\\nd\\re\""), "/a b\tc\nd\re");
    EXPECT_EQ(programOf("/a\\xb"), "/a\\xb") << "no escape that is known";
    EXPECT_EQ(programOf("/a\\"), "/a\\");
    EXPECT_EQ(programOf("\"/a\\"), "/a\\");
}

TEST(AutostartEntryTest, OnlyItsOwnGroupCounts)
{
    const auto state = readAutostart("Hidden=true\n[Other]\nExec=/other\n[Desktop Entry]\nExec=/bin/true\n"
                                     "[Another]\nHidden=true\nExec=/another\n");
    EXPECT_FALSE(state.isOff);
    EXPECT_EQ(state.program, "/bin/true");
}

TEST(AutostartEntryTest, IsOffByOneOfTwoWords)
{
    EXPECT_TRUE(readIn("Desktop Entry", " Hidden = true ").isOff);
    EXPECT_TRUE(readIn("Desktop Entry", "X-GNOME-Autostart-enabled=false").isOff);
    EXPECT_TRUE(readIn("Desktop Entry", "Hidden=true\nX-GNOME-Autostart-enabled=true").isOff);
    EXPECT_TRUE(readIn("Desktop Entry", "X-GNOME-Autostart-enabled=false\nHidden=false").isOff);
    for (const auto* const lines :
         {"Hidden=false", "X-GNOME-Autostart-enabled=true", "Hidden", "#Hidden=true"})
        EXPECT_FALSE(readIn("Desktop Entry", lines).isOff) << lines;
}

}  // namespace

}  // namespace sonvara::test
