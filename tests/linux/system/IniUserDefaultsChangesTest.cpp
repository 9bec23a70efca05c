// Changes of the settings' file by others: each is noticed, and none is lost.
#include "IniUserDefaultsFixture.h"

#include "helpers/DiskHooks.h"
#include "helpers/EventLoop.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/PosixSystem.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <optional>
#include <string>

namespace sonvara::test {

namespace {

using namespace std::chrono_literals;

using IniUserDefaultsChangesTest = IniUserDefaultsFixture;

TEST_F(IniUserDefaultsChangesTest, NoticesEveryChangeByOthers)
{
    const auto defaults = open();
    int changes = 0;
    const auto subscription = defaults->onChange([&] { ++changes; });
    const auto becomes = [&](const char* value) {
        return eventually([&] { return defaults->stringForKey("aiProvider") == value; });
    };
    replace("[General]\naiProvider=first\n");
    EXPECT_TRUE(becomes("first"));
    replace("[General]\naiProvider=second\n");
    EXPECT_TRUE(becomes("second"));
    replace("[General]\naiProvider=third one\n");
    EXPECT_TRUE(becomes("third one"));
    overwrite("[General]\naiProvider=fourth\n");
    EXPECT_TRUE(becomes("fourth"));
    overwrite("[General]\naiProvider=the fifth\n");
    EXPECT_TRUE(becomes("the fifth"));
    EXPECT_EQ(changes, 5);
    QFile::remove(path());
    EXPECT_TRUE(eventually([&] { return !defaults->hasObject("aiProvider"); }));
    EXPECT_EQ(changes, 6);
}

TEST_F(IniUserDefaultsChangesTest, LeavesAFileThatOthersChangeItsTime)
{
    makeFolder();
    const auto defaults = open();
    EXPECT_FALSE(defaults->hasObject("aiProvider"));
    replace("[General]\naiProvider=first\n");
    const auto time = QFileInfo(path()).lastModified();
    EXPECT_TRUE(eventually([&] { return defaults->stringForKey("aiProvider") == "first"; }));
    EXPECT_EQ(QFileInfo(path()).lastModified(), time);
}

TEST_F(IniUserDefaultsChangesTest, NoticesAChangeBehindALink)
{
    ASSERT_TRUE(QDir(folder_.path()).mkpath("real"));
    ASSERT_TRUE(QDir(folder_.path()).mkpath("sonvara"));
    const auto write = [&](const QByteArray& text) {
        QSaveFile file(path("real/settings"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        ASSERT_TRUE(file.commit());
    };
    write("[General]\naiProvider=first\n");
    ASSERT_TRUE(QFile::link(path("real/settings"), path()));
    const auto defaults = open();
    EXPECT_EQ(defaults->stringForKey("aiProvider"), "first");
    for (const char* const value : {"second", "the third"}) {
        write(QByteArray("[General]\naiProvider=") + value + "\n");
        EXPECT_TRUE(eventually([&] { return defaults->stringForKey("aiProvider") == value; }));
    }
    QFile::remove(path("real/settings"));
    EXPECT_TRUE(eventually([&] { return !defaults->hasObject("aiProvider"); }));
    write("[General]\naiProvider=fourth\n");
    EXPECT_TRUE(eventually([&] { return defaults->stringForKey("aiProvider") == "fourth"; }));
    defaults->setBool("aiIntros", true);
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_TRUE(content(*defaults).contains("aiIntros=true"));
}

TEST_F(IniUserDefaultsChangesTest, AFileReplacedWhileItIsReadIsReadAgain)
{
    makeFolder();
    replace("[General]\naiProvider=first\n");
    afterOpening(path().toStdString(), [&] { replace("[General]\naiProvider=the second\n"); });
    const auto defaults = open();
    EXPECT_EQ(defaults->stringForKey("aiProvider"), "the second");
    ASSERT_FALSE(isOpeningAwaited());
    afterOpening(path().toStdString(), [&] { replace("[General]\naiProvider=the very fourth\n"); });
    replace("[General]\naiProvider=and the third\n");
    EXPECT_TRUE(eventually([&] { return defaults->stringForKey("aiProvider") == "the very fourth"; }));
    EXPECT_FALSE(isOpeningAwaited());
}

TEST_F(IniUserDefaultsChangesTest, AWriteKeepsAChangeOfTheSameSizeAndTime)
{
    const auto defaults = open();
    defaults->setString("aiProvider", "claudeCLI");
    EXPECT_TRUE(defaults->flush(20s));
    const auto time = QFileInfo(path()).lastModified();
    overwrite("[General]\naiProvider=geminiCLI\n");
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(time, QFileDevice::FileModificationTime));
    file.close();
    defaults->setBool("aiIntros", true);
    EXPECT_TRUE(content(*defaults).contains("aiProvider=geminiCLI"));
    EXPECT_EQ(defaults->stringForKey("aiProvider"), "geminiCLI");
}

TEST_F(IniUserDefaultsChangesTest, TwoProcessesLoseNothingOfEachOther)
{
    constexpr int count = 100;
    const auto defaults = open();
    const auto other = PosixProcessLauncher().make({SETTINGS_WRITER,
                                                    {path().toStdString(), "other", std::to_string(count)},
                                                    "/",
                                                    PosixEnvironment().variables()});
    ASSERT_EQ(other->launch(), std::nullopt);
    for (int i = 0; i < count; ++i) defaults->setString("own" + std::to_string(i), "value");
    ASSERT_EQ(other->waitUntilExit(), 0);
    EXPECT_TRUE(eventually([&] { return defaults->hasObject("other" + std::to_string(count - 1)); }));
    for (int i = 0; i < count; ++i) {
        EXPECT_TRUE(defaults->hasObject("own" + std::to_string(i))) << i;
        EXPECT_TRUE(defaults->hasObject("other" + std::to_string(i))) << i;
        EXPECT_TRUE(content(*defaults).contains("own" + QByteArray::number(i) + "=")) << i;
    }
}

}  // namespace

}  // namespace sonvara::test
