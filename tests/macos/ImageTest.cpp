// Drawings as pictures of the system, judged by their PNG files.
#include "platform/macos/windows/CocoaImage.h"

#include "BigEndian.h"
#include "ui/StatusIcon.h"

#include <future>
#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

constexpr std::string_view pngSignature = "\x89PNG\r\n\x1a\n";

TEST(CocoaImageTest, DrawsTheStatusIconsInTheirSize)
{
    CocoaImageRenderer renderer;
    for (const bool isPlaying : {false, true}) {
        const auto image = renderer.render(statusIcon(isPlaying));
        ASSERT_NE(image, nullptr);
        const std::string png = pngData(*image);
        ASSERT_EQ(png.substr(0, pngSignature.size()), pngSignature);
        const std::size_t width = bigEndianAt(png, 16);
        EXPECT_EQ(width % 18, 0U);  // a whole number of pixels for each point
        EXPECT_EQ(width, bigEndianAt(png, 20)) << "the height";
    }
}

TEST(CocoaImageTest, ThePlayingIconDiffersAndEachIsTheSameEachTime)
{
    CocoaImageRenderer renderer;
    const auto png = [&renderer](bool isPlaying) { return pngData(*renderer.render(statusIcon(isPlaying))); };
    EXPECT_EQ(png(false), png(false));
    EXPECT_EQ(png(true), png(true));
    EXPECT_NE(png(false), png(true));
}

TEST(CocoaImageTest, AnEmptyDrawingIsClearAndAFilledOneIsNot)
{
    CocoaImageRenderer renderer;
    const Drawing empty{18, 18, false, {}};
    Drawing filled = empty;
    filled.steps.emplace_back(FillOval{{0, 0, 18, 18}, {ColorRole::systemGreen}});
    EXPECT_NE(pngData(*renderer.render(empty)), pngData(*renderer.render(filled)));
}

TEST(CocoaImageTest, DrawsOffTheMainThread)
{
    CocoaImageRenderer renderer;
    const auto drawn =
        std::async(std::launch::async, [&renderer] { return renderer.render(statusIcon(true)); }).get();
    ASSERT_NE(drawn, nullptr);
    EXPECT_EQ(pngData(*drawn), pngData(*renderer.render(statusIcon(true))));
}

}  // namespace
}  // namespace sonvara::test
