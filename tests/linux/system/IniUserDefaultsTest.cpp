// Settings: what is set is kept, written and told.
#include "IniUserDefaultsFixture.h"

#include <QFileInfo>

#include <atomic>
#include <optional>
#include <thread>

namespace sonvara::test {

namespace {

using namespace std::chrono_literals;

using IniUserDefaultsTest = IniUserDefaultsFixture;

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

TEST_F(IniUserDefaultsTest, ASubscriberMayWrite)
{
    const auto defaults = open();
    const auto subscription =
        defaults->onChange([&] { defaults->setBool("duckMusic", !defaults->boolForKey("aiIntros")); });
    defaults->setBool("aiIntros", true);
    EXPECT_TRUE(defaults->hasObject("duckMusic"));
    EXPECT_FALSE(defaults->boolForKey("duckMusic"));
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
