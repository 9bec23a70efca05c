// Settings on a disk that is damaged, cannot be written or is slow.
#include "IniUserDefaultsFixture.h"

#include "helpers/DiskHooks.h"
#include "helpers/EventLoop.h"

#include <QFile>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <memory>
#include <string>
#include <utility>

namespace sonvara::test {

namespace {

using namespace std::chrono_literals;

using IniUserDefaultsDiskTest = IniUserDefaultsFixture;

TEST_F(IniUserDefaultsDiskTest, ADamagedFileKeepsItsReadableValues)
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

int complaints = 0;

TEST_F(IniUserDefaultsDiskTest, AValueWithoutAKeyIsOverlookedInSilence)
{
    makeFolder();
    replace("[General]\n=x\naiIntros=true\n");
    auto* const before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++complaints; });
    EXPECT_TRUE(open()->boolForKey("aiIntros"));
    qInstallMessageHandler(before);
    EXPECT_EQ(complaints, 0);
}

TEST_F(IniUserDefaultsDiskTest, WaitsForItsFirstReadingAsLongAsItIsDocumented)
{
    EXPECT_EQ(IniUserDefaults::patience, 100ms);
}

TEST_F(IniUserDefaultsDiskTest, AStoreThatNobodyHasAskedHasNothingToWriteAndNoThread)
{
    const auto threads = [] {
        return std::ranges::count_if(std::filesystem::directory_iterator("/proc/self/task"),
                                     [](const auto& task) {
                                         std::ifstream file(task.path() / "comm");
                                         std::string name;
                                         return std::getline(file, name) && name == "settings";
                                     });
    };
    const auto defaults = open();
    EXPECT_TRUE(defaults->flush(0ms));
    EXPECT_EQ(threads(), 0);
    EXPECT_FALSE(defaults->hasObject("aiIntros"));
    EXPECT_EQ(threads(), 1);
}

TEST_F(IniUserDefaultsDiskTest, AStoreThatCannotBeWrittenKeepsValuesAndSaysSoOnce)
{
    QFile blocker(path("sonvara"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    const auto defaults = open();
    int changes = 0;
    const auto subscription = defaults->onChange([&] { ++changes; });
    defaults->setBool("aiIntros", true);
    EXPECT_TRUE(defaults->flush(20s));
    defaults->setString("aiProvider", "geminiCLI");
    EXPECT_TRUE(defaults->boolForKey("aiIntros"));
    EXPECT_EQ(defaults->stringForKey("aiProvider"), "geminiCLI");
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(defaults->flush(20s));
    ASSERT_EQ(log_.messages().size(), 1U);
    EXPECT_EQ(log_.messages().front().level, LogLevel::error);
}

TEST_F(IniUserDefaultsDiskTest, AFileThatCannotBeReadYetIsTakenWhenItCan)
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

/// A disk on which a flush takes until the test lets it go on.
class SlowDiskTest : public IniUserDefaultsFixture {
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

}  // namespace

}  // namespace sonvara::test
