#include "helpers/DiskHooks.h"

#include "platform/linux/system/AutostartLoginItem.h"
#include "platform/linux/system/WorkerPool.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <future>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

namespace sonvara::test {

namespace {

using namespace std::chrono_literals;

class AutostartTest : public testing::Test {
protected:
    void SetUp() override { addProgram(program); }

    void addProgram(const QString& where)
    {
        QDir().mkpath(QFileInfo(where).path());
        QFile file(where);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    // Waits longer than the program does: a busy machine is no slow disk.
    AutostartLoginItem item(std::chrono::milliseconds limit = 20s)
    {
        return {{"Sample", program, "org.example.Sample"}, "org.example.Sample", workers, folder, limit};
    }

    void write(const QByteArray& text)
    {
        QDir().mkpath(folder);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    WorkerPool workers;
    QTemporaryDir root;
    QString folder = root.filePath("config/autostart");
    QString path = folder + "/org.example.Sample.desktop";
    QString program = root.filePath("bin/sample");
};

TEST_F(AutostartTest, IsOffAtFirst)
{
    EXPECT_EQ(item().status(), LoginItemStatus::notRegistered);
}

TEST_F(AutostartTest, WritesAnEntryAndRemovesIt)
{
    auto login = item();
    EXPECT_EQ(login.registerItem(), std::nullopt);
    EXPECT_EQ(login.status(), LoginItemStatus::enabled);
    EXPECT_EQ(login.unregisterItem(), std::nullopt);
    EXPECT_EQ(login.status(), LoginItemStatus::notRegistered);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(login.unregisterItem(), std::nullopt);  // nothing left to remove is no failure
}

TEST_F(AutostartTest, CountsAHiddenEntryAsOff)
{
    write("[Desktop Entry]\nType=Application\nName=Sample\nExec=/bin/true\nHidden=true\n");
    EXPECT_EQ(item().status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(item().registerItem(), std::nullopt);
    EXPECT_EQ(item().status(), LoginItemStatus::enabled);
}

TEST_F(AutostartTest, CountsAnEntryWhoseProgramIsGoneAsOff)
{
    EXPECT_EQ(item().registerItem(), std::nullopt);
    QFile::remove(program);
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
}

TEST_F(AutostartTest, CountsAnEntryThatGnomeSwitchedOffAsOff)
{
    write(
        "[Desktop Entry]\nType=Application\nName=Sample\nExec=/bin/true\nX-GNOME-Autostart-enabled=false\n");
    EXPECT_EQ(item().status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(item().registerItem(), std::nullopt);
    EXPECT_EQ(item().status(), LoginItemStatus::enabled);
}

TEST_F(AutostartTest, StartsThisProgramWhoeverHasStartedIt)
{
    // A program that came in an AppImage leaves its variables to all that it starts.
    qputenv("APPIMAGE", "/opt/Other.AppImage");
    EXPECT_EQ(AutostartLoginItem::thisProgram().program, QCoreApplication::applicationFilePath());
    qunsetenv("APPIMAGE");
}

TEST_F(AutostartTest, ReadsWhatOthersWrite)
{
    write("# by hand\n[Other]\nHidden=true\n[Desktop Entry]\n Exec = sh -c true "
          "\nX-GNOME-Autostart-enabled=true\n");
    EXPECT_EQ(item().status(), LoginItemStatus::enabled);
    write("no entry at all");
    EXPECT_EQ(item().status(), LoginItemStatus::notFound);
}

TEST_F(AutostartTest, DoesNotWaitForADiskThatHangs)
{
    ASSERT_TRUE(QDir().mkpath(folder));
    std::promise<void> gate;
    const auto opened = gate.get_future().share();
    beforeFlushing([opened] { opened.wait(); });
    ASSERT_EQ(::mkfifo(path.toStdString().c_str(), 0600), 0);  // nobody will ever write to it
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(item(100ms).status(), LoginItemStatus::notRegistered);
    const auto error = item(100ms).registerItem();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
    ASSERT_TRUE(error.has_value());
    EXPECT_NE(error->find("the disk does not answer"), std::string::npos);
    QFile writer(path);
    EXPECT_TRUE(writer.open(QIODevice::WriteOnly));  // lets the reader go
    writer.close();
    gate.set_value();
    EXPECT_TRUE(workers.shutDown(20s));
    beforeFlushing(nullptr);
}

TEST_F(AutostartTest, OfTwoChangesOnASlowDiskTheLaterOneCounts)
{
    std::promise<void> gate;
    beforeFlushing([opened = gate.get_future().share()] { opened.wait(); });
    auto slow = item(10ms);
    EXPECT_TRUE(slow.registerItem().has_value()) << "it is not done yet";
    EXPECT_TRUE(slow.unregisterItem().has_value());
    gate.set_value();
    EXPECT_TRUE(workers.shutDown(20s));
    EXPECT_FALSE(QFile::exists(path));
    beforeFlushing(nullptr);
}

TEST_F(AutostartTest, SaysWhyItCannotWrite)
{
    QDir().mkpath(root.filePath("config"));
    QFile obstacle(folder);  // a file where the folder should be; also in the way of the superuser
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    const auto error = item().registerItem();
    ASSERT_TRUE(error.has_value());
    EXPECT_NE(error->find(folder.toStdString()), std::string::npos);
    EXPECT_EQ(item().status(), LoginItemStatus::notRegistered);
}

class AutostartPathTest : public AutostartTest, public testing::WithParamInterface<const char*> {};

TEST_P(AutostartPathTest, SurvivesTheQuotingOfDesktopEntries)
{
    program = root.filePath(QStringLiteral("bin/") + GetParam());
    addProgram(program);
    EXPECT_EQ(item().registerItem(), std::nullopt);
    EXPECT_EQ(item().status(), LoginItemStatus::enabled);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto text = file.readAll();
    EXPECT_EQ(readAutostart(text).program, program);
    EXPECT_TRUE(text.contains("\nIcon=org.example.Sample\n")) << text.toStdString();
    const auto checker = QStandardPaths::findExecutable("desktop-file-validate");
    ASSERT_FALSE(checker.isEmpty()) << "desktop-file-validate is needed (package desktop-file-utils)";
    // Not QProcess: a thread sanitizer loses count of the locks over the way in which it forks.
    FILE* const pipe = ::popen((checker + ' ' + path + " 2>&1").toStdString().c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string complaints;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) complaints += static_cast<char>(c);
    EXPECT_EQ(::pclose(pipe), 0);
    EXPECT_EQ(complaints, "");
}

INSTANTIATE_TEST_SUITE_P(Names, AutostartPathTest,
                         testing::Values("plain", "with blank", "50% $HOME", "back\\slash", "quo\"te",
                                         "tick`s", "A&B;C", "Señorita 夜"),
                         [](const auto& test) { return "Name" + std::to_string(test.index); });

}  // namespace

}  // namespace sonvara::test
