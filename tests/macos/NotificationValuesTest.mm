// What becomes of the values in a notification of the system.
#import "platform/macos/players/NotificationValues.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

Notification notificationWith(NSDictionary* userInfo)
{
    return toNotification([NSNotification notificationWithName:@"a.player" object:nil userInfo:userInfo]);
}

Variant variantOf(id value)
{
    return notificationWith(@{@"key" : value}).userInfo->at("key");
}

TEST(NotificationValuesTest, KeepsNameAndAbsence)
{
    const Notification notification = notificationWith(nil);
    EXPECT_EQ(notification.name, "a.player");
    EXPECT_EQ(notification.userInfo, std::nullopt);
    EXPECT_EQ(notificationWith([NSDictionary dictionary]).userInfo, UserInfo());
}

TEST(NotificationValuesTest, TellsTruthValuesFromNumbers)
{
    EXPECT_EQ(variantOf([NSNumber numberWithBool:YES]), Variant(true));
    EXPECT_EQ(variantOf([NSNumber numberWithBool:NO]), Variant(false));
    EXPECT_EQ(variantOf([NSNumber numberWithInt:1]), Variant(std::int64_t{1}));
    EXPECT_EQ(variantOf([NSNumber numberWithLongLong:-5]), Variant(std::int64_t{-5}));
    EXPECT_EQ(variantOf([NSNumber numberWithDouble:2.5]), Variant(2.5));
    EXPECT_EQ(variantOf([NSNumber numberWithFloat:0.5F]), Variant(0.5));
}

TEST(NotificationValuesTest, KeepsTextsAndMarksTheRest)
{
    EXPECT_EQ(variantOf(@"Bj\u00f6rk"), Variant("Bj\u00f6rk"));
    EXPECT_EQ(variantOf([NSDate date]), Variant(std::monostate()));
    EXPECT_EQ(variantOf([NSArray array]), Variant(std::monostate()));
}

TEST(NotificationValuesTest, LeavesOutKeysThatAreNoStrings)
{
    const Notification notification = notificationWith(@{[NSNumber numberWithInt:1] : @"x", @"Name" : @"y"});
    EXPECT_EQ(notification.userInfo, (UserInfo{{"Name", "y"}}));
}

}  // namespace
}  // namespace sonvara::test
