// What the application object is given beside the program itself.
#include "platform/macos/system/CocoaApplication.h"
#import "platform/macos/system/Strings.h"

#import <AppKit/AppKit.h>

#include <gtest/gtest.h>
#include <map>

@protocol AskedAtItsStart
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application;
@end

namespace sonvara::test {
namespace {

TEST(CocoaApplicationTest, SaysThatItsRestorableStateIsSecure)
{
    const CocoaApplication application;
    id delegate = [NSApp delegate];
    ASSERT_TRUE([delegate respondsToSelector:@selector(applicationSupportsSecureRestorableState:)]);
    EXPECT_TRUE([(id<AskedAtItsStart>)delegate applicationSupportsSecureRestorableState:NSApp]);
}

TEST(CocoaApplicationTest, HasTheUsualKeysInAMenuBar)
{
    const CocoaApplication application;
    std::map<std::string, std::string> actions;
    for (NSMenuItem* menu in [[NSApp mainMenu] itemArray]) {
        for (NSMenuItem* item in [[menu submenu] itemArray]) {
            actions[toString([item keyEquivalent])] = toString(NSStringFromSelector([item action]));
            EXPECT_EQ([item target], nil) << "who has the keyboard";
        }
    }
    const std::map<std::string, std::string> expected{{"a", "selectAll:"},
                                                      {"c", "copy:"},
                                                      {"m", "performMiniaturize:"},
                                                      {"q", "terminate:"},
                                                      {"w", "performClose:"}};
    EXPECT_EQ(actions, expected);
}

}  // namespace
}  // namespace sonvara::test
