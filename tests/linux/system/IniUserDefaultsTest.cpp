#include "helpers/DiskHooks.h"
#include "helpers/EventLoop.h"
#include "helpers/RecordingLog.h"

#include "platform/linux/system/IniUserDefaults.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/PosixSystem.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>
#include <atomic>
#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <thread>
#include <utility>

namespace sonvara::test {

namespace {

using namespace std::chrono_literals;

class IniUserDefaultsTest : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name = "sonvara/sonvara.conf") const
    {
        return folder_.filePath(name);
    }

    // Waits for the file longer than the program does: a busy machine is no slow disk.
    std::unique_ptr<IniUserDefaults> open()
    {
        return std::make_unique<IniUserDefaults>(path().toStdString(), log_, 20s);
    }

    void makeFolder() const { ASSERT_TRUE(QDir(folder_.path()).mkpath("sonvara")); }

    // Replaces the file at once, as careful programs do.
    void replace(const QByteArray& content) const
    {
        QSaveFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        ASSERT_TRUE(file.commit());
    }

    // Empties the file and fills it again, as simple editors do.
    void overwrite(const QByteArray& content) const
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    // What the file holds when all that was set has been written.
    [[nodiscard]] QByteArray content(IniUserDefaults& defaults) const
    {
        EXPECT_TRUE(defaults.flush(20s));
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    QTemporaryDir folder_;
    RecordingLog log_;
};

TEST_F(IniUserDefaultsTest, AFreshStoreHoldsNothing)
{
    const auto defaults = open();
    EXPECT_FALSE(QFileInfo(path()).dir().exists()) << "nobody has used it yet";
    EXPECT_FALSE(defaults->hasObject("announcementsEnabled"));
    EXPECT_FALSE(defaults->boolForKey("announcementsEnabled"));
    EXPECT_EQ(defaults->stringForKey("aiProvider"), std::nullopt);
    EXPECT_TRUE(QFileInfo(path()).dir().exists());
    EXPECT_FALSE(QFileInfo::exists(path()));
}

TEST_F(IniUserDefaultsTest, ValuesOutliveTheObjectAndAreWritten)
{
    {
        const auto defaults = open();
        defaults->setBool("announcementsEnabled", false);
        EXPECT_TRUE(content(*defaults).contains("announcementsEnabled=false"));
        defaults->setBool("aiIntros", true);
        defaults->setString("aiProvider", "geminiCLI");
        defaults->setString("text", "a, b; \"c\" \xC3\xA9 \xE6\xBC\xA2\n@x");
    }
    const auto defaults = open();
    EXPECT_TRUE(defaults->hasObject("announcementsEnabled"));
    EXPECT_FALSE(defaults->boolForKey("announcementsEnabled"));
    EXPECT_TRUE(defaults->boolForKey("aiIntros"));
    EXPECT_EQ(defaults->stringForKey("aiProvider"), "geminiCLI");
    EXPECT_EQ(defaults->stringForKey("text"), "a, b; \"c\" \xC3\xA9 \xE6\xBC\xA2\n@x");
    EXPECT_TRUE(log_.messages().empty());
}

TEST_F(IniUserDefaultsTest, OnlyBooleansAreBooleans)
{
    makeFolder();
    replace("[General]\na=true\nb=1\nc=false\nd=0\ne=yes\nf=\ng=2\nh=true, true\n");
    const auto defaults = open();
    for (const char* const key : {"a", "b"}) EXPECT_TRUE(defaults->boolForKey(key)) << key;
    for (const char* const key : {"c", "d", "e", "f", "g", "h"})
        EXPECT_FALSE(defaults->boolForKey(key)) << key;
    for (const char* const key : {"a", "b", "c", "d", "e", "f", "g", "h"})
        EXPECT_TRUE(defaults->hasObject(key)) << key;
    EXPECT_EQ(defaults->stringForKey("f"), "");
    EXPECT_EQ(defaults->stringForKey("g"), "2");
    EXPECT_EQ(defaults->stringForKey("h"), std::nullopt);
}

TEST_F(IniUserDefaultsTest, TellsOfItsOwnChangesOnly)
{
    const auto defaults = open();
    int changes = 0;
    auto subscription = defaults->onChange([&] { ++changes; });
    defaults->setBool("aiIntros", true);
    EXPECT_EQ(changes, 1);
    defaults->setBool("aiIntros", true);
    EXPECT_EQ(changes, 1);
    subscription.reset();
    defaults->setBool("aiIntros", false);
    EXPECT_EQ(changes, 1);
}

TEST_F(IniUserDefaultsTest, NoticesEveryChangeByOthers)
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

TEST_F(IniUserDefaultsTest, NoticesAChangeBehindALink)
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
    defaults->setBool("aiIntros", true);
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_TRUE(content(*defaults).contains("aiIntros=true"));
}

TEST_F(IniUserDefaultsTest, ASubscriberMayWrite)
{
    const auto defaults = open();
    const auto subscription =
        defaults->onChange([&] { defaults->setBool("duckMusic", !defaults->boolForKey("aiIntros")); });
    defaults->setBool("aiIntros", true);
    EXPECT_TRUE(defaults->hasObject("duckMusic"));
    EXPECT_FALSE(defaults->boolForKey("duckMusic"));
}

TEST_F(IniUserDefaultsTest, ADamagedFileKeepsItsReadableValues)
{
    static constexpr char damaged[] = "[General]\naiIntros=true\nno equals sign here\n[\n\xFF\xFE\0\x01\n"
                                      "[General]\naiProvider=geminiCLI\n";
    makeFolder();
    replace(QByteArray(damaged, sizeof damaged - 1));
    const auto defaults = open();
    EXPECT_TRUE(defaults->boolForKey("aiIntros"));
    EXPECT_EQ(defaults->stringForKey("aiProvider"), "geminiCLI");
    defaults->setBool("duckMusic", false);
    EXPECT_TRUE(defaults->flush(20s));
    const auto later = open();
    EXPECT_TRUE(later->boolForKey("aiIntros"));
    EXPECT_TRUE(later->hasObject("duckMusic"));
    EXPECT_TRUE(content(*defaults).contains("duckMusic=false"));
}

TEST_F(IniUserDefaultsTest, AStoreThatCannotBeWrittenKeepsValuesAndSaysSoOnce)
{
    QFile blocker(path("sonvara"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    const auto defaults = open();
    int changes = 0;
    const auto subscription = defaults->onChange([&] { ++changes; });
    defaults->setBool("aiIntros", true);
    defaults->setString("aiProvider", "geminiCLI");
    EXPECT_TRUE(defaults->boolForKey("aiIntros"));
    EXPECT_EQ(defaults->stringForKey("aiProvider"), "geminiCLI");
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(defaults->flush(20s));
    ASSERT_EQ(log_.messages().size(), 1U);
    EXPECT_EQ(log_.messages().front().level, LogLevel::error);
}

TEST_F(IniUserDefaultsTest, TwoProcessesLoseNothingOfEachOther)
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

TEST_F(IniUserDefaultsTest, AFileReplacedWhileItIsReadIsReadAgain)
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

TEST_F(IniUserDefaultsTest, AWriteKeepsAChangeOfTheSameSizeAndTime)
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

// A disk on which a flush takes until the test lets it go on.
class SlowDiskTest : public IniUserDefaultsTest {
protected:
    SlowDiskTest()
    {
        beforeFlushing([this] {
            ++flushes_;
            opened_.wait();
        });
    }
    ~SlowDiskTest() override
    {
        letGo();
        beforeFlushing(nullptr);
    }
    void letGo()
    {
        if (!std::exchange(isOpen_, true)) gate_.set_value();
    }

    std::atomic<int> flushes_ = 0;

private:
    std::promise<void> gate_;
    const std::shared_future<void> opened_ = gate_.get_future().share();
    bool isOpen_ = false;
};

TEST_F(SlowDiskTest, AClickWaitsForNothingAndTheLastStateIsWritten)
{
    const auto defaults = open();
    int changes = 0;
    const auto subscription = defaults->onChange([&] { ++changes; });
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 101; ++i) defaults->setBool("announcementsEnabled", i % 2 != 0);
    defaults->setString("aiProvider", "geminiCLI");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
    EXPECT_EQ(changes, 102);
    EXPECT_FALSE(defaults->boolForKey("announcementsEnabled"));
    EXPECT_FALSE(defaults->flush(10ms));
    letGo();
    EXPECT_TRUE(content(*defaults).contains("announcementsEnabled=false"));
    EXPECT_TRUE(content(*defaults).contains("aiProvider=geminiCLI"));
    EXPECT_LE(flushes_, 4) << "two for the first, and two for all that came meanwhile";
    EXPECT_EQ(changes, 102);
}

TEST_F(SlowDiskTest, TheEndLosesNothing)
{
    auto defaults = open();
    defaults->setBool("aiIntros", true);
    ASSERT_TRUE(eventually([&] { return flushes_ == 1; }));
    defaults->setString("aiProvider", "geminiCLI");
    letGo();
    defaults.reset();
    EXPECT_TRUE(open()->boolForKey("aiIntros"));
    EXPECT_EQ(open()->stringForKey("aiProvider"), "geminiCLI");
}

TEST_F(IniUserDefaultsTest, AFileThatCannotBeReadYetIsTakenWhenItCan)
{
    makeFolder();
    replace("[General]\naiProvider=geminiCLI\n");
    std::promise<void> gate;
    afterOpening(path().toStdString(), [opened = gate.get_future().share()] { opened.wait(); });
    const auto defaults = std::make_unique<IniUserDefaults>(path().toStdString(), log_);
    int changes = 0;
    const auto begin = std::chrono::steady_clock::now();
    const auto subscription = defaults->onChange([&] { ++changes; });
    EXPECT_FALSE(defaults->hasObject("aiProvider"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
    EXPECT_FALSE(defaults->flush(10ms)) << "the end would wait for the disk";
    defaults->setBool("aiIntros", true);
    EXPECT_EQ(changes, 1);
    gate.set_value();
    EXPECT_TRUE(eventually([&] { return changes == 2; }));
    EXPECT_EQ(defaults->stringForKey("aiProvider"), "geminiCLI");
    EXPECT_TRUE(content(*defaults).contains("aiIntros=true"));
}

TEST_F(IniUserDefaultsTest, OtherThreadsReadWhileTheMainThreadWrites)
{
    const auto defaults = open();
    defaults->setString("aiProvider", "claudeCLI");
    std::atomic<bool> isOver = false;
    std::atomic<int> wrong = 0;
    std::thread reader([&] {
        while (!isOver) {
            const auto value = defaults->stringForKey("aiProvider");
            if (value != "claudeCLI" && value != "geminiCLI") ++wrong;
        }
    });
    for (int i = 0; i < 50; ++i) defaults->setString("aiProvider", i % 2 == 0 ? "geminiCLI" : "claudeCLI");
    isOver = true;
    reader.join();
    EXPECT_EQ(wrong, 0);
}

TEST(IniUserDefaultsPathTest, IsInTheUsersConfigurationFolder)
{
    const auto before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "/some/where");
    EXPECT_EQ(IniUserDefaults::standardPath(), "/some/where/sonvara/sonvara.conf");
    before.isNull() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", before);
}

}  // namespace

}  // namespace sonvara::test
