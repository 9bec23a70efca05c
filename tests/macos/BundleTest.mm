// What the bundle tells the system of the program.
#include "BigEndian.h"
#include "Command.h"
#include "helpers/TemporaryFolder.h"
#include "platform/macos/system/Strings.h"

#import <Foundation/Foundation.h>

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>

namespace sonvara::test {
namespace {

NSDictionary* propertyList(const char* path)
{
    return [NSDictionary dictionaryWithContentsOfFile:toNSString(path)];
}

std::string textIn(NSDictionary* list, NSString* key)
{
    return toString([list objectForKey:key]);
}

TEST(BundleTest, DescribesAnApplicationWithoutDockIconThatSendsAppleEvents)
{
    NSDictionary* info = propertyList(INFO_PLIST);
    EXPECT_EQ(textIn(info, @"CFBundleIdentifier"), SONVARA_IDENTIFIER);
    EXPECT_EQ(textIn(info, @"CFBundlePackageType"), "APPL");
    EXPECT_EQ(textIn(info, @"LSMinimumSystemVersion"), "13.0");
    EXPECT_FALSE(textIn(info, @"CFBundleShortVersionString").empty());
    EXPECT_FALSE(textIn(info, @"NSAppleEventsUsageDescription").empty());
    EXPECT_TRUE([[info objectForKey:@"LSUIElement"] boolValue]);
    EXPECT_TRUE([[info objectForKey:@"NSHighResolutionCapable"] boolValue]);
}

TEST(BundleTest, IsEntitledToSendAppleEvents)
{
    NSDictionary* entitlements = propertyList(ENTITLEMENTS);
    EXPECT_TRUE([[entitlements objectForKey:@"com.apple.security.automation.apple-events"] boolValue]);
}

TEST(BundleTest, LetsASecondUserOfTheMacStartIt)
{
    EXPECT_EQ([propertyList(INFO_PLIST) objectForKey:@"LSMultipleInstancesProhibited"], nil);
}

TEST(BundleTest, IconIsTheSameOnADarkMac)
{
    const test::TemporaryFolder folder;
    const auto make = [&folder](const std::string& appearance) {
        const std::string path = folder.file(appearance);
        EXPECT_TRUE(runCommand("SONVARA_APPEARANCE=" + appearance + " " + ICON_MAKER + " '" + path + "'"));
        std::ifstream file(path, std::ios::binary);
        return std::string{std::istreambuf_iterator<char>(file), {}};
    };
    const auto light = make("light");
    EXPECT_FALSE(light.empty());
    EXPECT_TRUE(light == make("dark"));
}

TEST(BundleTest, IconHoldsEveryPictureInItsSize)
{
    const test::TemporaryFolder folder;
    const std::string path = folder.file("Sonvara.icns");
    ASSERT_TRUE(runCommand(std::string(ICON_MAKER) + " '" + path + "'"));
    std::ifstream file(path, std::ios::binary);
    const std::string icns{std::istreambuf_iterator<char>(file), {}};
    ASSERT_EQ(icns.substr(0, 4), "icns");
    ASSERT_EQ(bigEndianAt(icns, 4), icns.size());
    std::map<std::string, std::size_t> widths;
    for (std::size_t at = 8; at < icns.size(); at += bigEndianAt(icns, at + 4))
        widths[icns.substr(at, 4)] = bigEndianAt(icns, at + 8 + 16);
    const std::map<std::string, std::size_t> expected{{"ic07", 128},  {"ic08", 256}, {"ic09", 512},
                                                      {"ic10", 1024}, {"ic11", 32},  {"ic12", 64},
                                                      {"ic13", 256},  {"ic14", 512}};
    EXPECT_EQ(widths, expected);
}

}  // namespace
}  // namespace sonvara::test
