// The launch-at-login switch.
#include "system/LaunchAtLoginHelper.h"

#include "fakes/FakeSystem.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace sonvara::test {
namespace {

TEST(LaunchAtLoginHelperTest, OnlyTheEnabledStatusShowsAsOn)
{
    FakeLoginItem item;
    for (const auto status : {LoginItemStatus::enabled, LoginItemStatus::notRegistered,
                              LoginItemStatus::requiresApproval, LoginItemStatus::notFound}) {
        item.state = status;
        EXPECT_EQ(LaunchAtLoginHelper(item).isEnabled.get(), status == LoginItemStatus::enabled);
    }
}

TEST(LaunchAtLoginHelperTest, ASuccessfulToggleTurnsOverWithoutAskingAgain)
{
    FakeLoginItem item;
    LaunchAtLoginHelper helper(item);
    const auto reads = item.statusReads;
    helper.toggle();
    EXPECT_TRUE(helper.isEnabled.get());
    EXPECT_EQ(item.state, LoginItemStatus::enabled);
    helper.toggle();
    EXPECT_FALSE(helper.isEnabled.get());
    EXPECT_EQ(item.state, LoginItemStatus::notRegistered);
    EXPECT_EQ(item.statusReads, reads);
}

TEST(LaunchAtLoginHelperTest, ARegistrationThatWaitsForApprovalShowsOnUntilTheNextCheck)
{
    FakeLoginItem item;
    item.afterRegistering = LoginItemStatus::requiresApproval;
    LaunchAtLoginHelper helper(item);
    helper.toggle();
    EXPECT_TRUE(helper.isEnabled.get());
    helper.checkStatus();
    EXPECT_FALSE(helper.isEnabled.get());
}

TEST(LaunchAtLoginHelperTest, AFailedToggleChangesNothingAndPrintsOneLine)
{
    FakeLoginItem item;
    item.error = "no permission";
    LaunchAtLoginHelper helper(item);
    testing::internal::CaptureStdout();
    helper.toggle();
    struct stat written{};
    ASSERT_EQ(::fstat(STDOUT_FILENO, &written), 0);
    EXPECT_GT(written.st_size, 0) << "whoever looks now sees it";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Failed to toggle launch at login: no permission\n");
    EXPECT_FALSE(helper.isEnabled.get());
}

TEST(LaunchAtLoginHelperTest, ACheckNoticesARegistrationRemovedElsewhere)
{
    FakeLoginItem item;
    item.state = LoginItemStatus::enabled;
    LaunchAtLoginHelper helper(item);
    item.state = LoginItemStatus::notRegistered;
    helper.checkStatus();
    EXPECT_FALSE(helper.isEnabled.get());
}

TEST(LaunchAtLoginHelperIdentifierTest, IsTheApplications)
{
    EXPECT_STREQ(LaunchAtLoginHelper::bundleIdentifier, "app.sonvara.Sonvara");
}

}  // namespace
}  // namespace sonvara::test
