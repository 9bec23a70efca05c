// Settings and the pasteboard.
#include "Probe.h"
#include "platform/macos/system/CocoaPasteboard.h"
#include "platform/macos/system/CocoaUserDefaults.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

TEST(CocoaUserDefaultsTest, HasNothingUnderAnUnknownKey)
{
    CocoaUserDefaults defaults;
    EXPECT_FALSE(defaults.hasObject("nobodyWroteThis"));
    EXPECT_FALSE(defaults.boolForKey("nobodyWroteThis"));
    EXPECT_EQ(defaults.stringForKey("nobodyWroteThis"), std::nullopt);
}

TEST(CocoaUserDefaultsTest, KeepsValues)
{
    CocoaUserDefaults defaults;
    defaults.setBool("aFlag", false);
    defaults.setString("aText", "Gemini — ö");
    EXPECT_TRUE(defaults.hasObject("aFlag"));
    EXPECT_FALSE(defaults.boolForKey("aFlag"));
    EXPECT_EQ(CocoaUserDefaults().stringForKey("aText"), "Gemini — ö");
    defaults.setBool("aFlag", true);
    EXPECT_TRUE(CocoaUserDefaults().boolForKey("aFlag"));
}

TEST(CocoaUserDefaultsTest, TellsOfChangesLaterUntilTheHandleIsDropped)
{
    CocoaUserDefaults defaults;
    int kept = 0;
    int dropped = 0;
    const auto handle = defaults.onChange([&] { ++kept; });
    auto other = defaults.onChange([&] { ++dropped; });
    defaults.setBool("changing", true);
    EXPECT_EQ(kept, 0);
    ASSERT_TRUE(probe::runUntil([&] { return kept > 0; }));
    EXPECT_EQ(dropped, kept);
    other.reset();
    const int before = kept;
    defaults.setBool("changing", false);
    ASSERT_TRUE(probe::runUntil([&] { return kept > before; }));
    EXPECT_EQ(dropped, before);
}

TEST(CocoaPasteboardTest, ReplacesTheWholeContent)
{
    CocoaPasteboard pasteboard;
    probe::setClipboard("before");
    pasteboard.clearContents();
    EXPECT_EQ(probe::clipboard(), "");
    pasteboard.setString("[09:05:07] INFO: Spoke: „Ünïcode“\nsecond line");
    EXPECT_EQ(probe::clipboard(), "[09:05:07] INFO: Spoke: „Ünïcode“\nsecond line");
}

}  // namespace
}  // namespace sonvara::test
