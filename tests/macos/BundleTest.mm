// What the bundle tells the system of the program.
#include "Command.h"
#include "platform/macos/Strings.h"

#import <Foundation/Foundation.h>

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace sonvara {
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

TEST(BundleTest, IconHoldsEveryPictureInItsSize)
{
    const auto path = std::filesystem::temp_directory_path() / "sonvara-test.icns";
    ASSERT_TRUE(runCommand(std::string(ICON_MAKER) + " '" + path.string() + "'"));
    std::ifstream file(path, std::ios::binary);
    const std::string icns{std::istreambuf_iterator<char>(file), {}};
    std::filesystem::remove(path);
    const auto numberAt = [&icns](std::size_t offset) {
        std::size_t number = 0;
        for (std::size_t i = 0; i < 4; ++i)
            number = number << 8 | static_cast<unsigned char>(icns.at(offset + i));
        return number;
    };
    ASSERT_EQ(icns.substr(0, 4), "icns");
    ASSERT_EQ(numberAt(4), icns.size());
    std::map<std::string, std::size_t> widths;
    for (std::size_t at = 8; at < icns.size(); at += numberAt(at + 4))
        widths[icns.substr(at, 4)] = numberAt(at + 8 + 16);
    const std::map<std::string, std::size_t> expected{{"ic07", 128},  {"ic08", 256}, {"ic09", 512},
                                                      {"ic10", 1024}, {"ic11", 32},  {"ic12", 64},
                                                      {"ic13", 256},  {"ic14", 512}};
    EXPECT_EQ(widths, expected);
}

}  // namespace
}  // namespace sonvara
