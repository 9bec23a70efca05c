// Drawings as pictures of the system, judged by their PNG files and their pixels.
#include "platform/macos/windows/CocoaImage.h"

#include "BigEndian.h"
#include "ui/StatusIcon.h"

#import "platform/macos/windows/NativeImage.h"

#include <future>
#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

constexpr std::string_view pngSignature = "\x89PNG\r\n\x1a\n";

struct Pixel {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;
};

/// What `drawing` is at a point of its own space, whose y grows upwards.
Pixel pixelAt(const Drawing& drawing, double x, double y)
{
    @autoreleasepool {
        const auto image = CocoaImageRenderer().render(drawing);
        NSBitmapImageRep* pixels =
            [NSBitmapImageRep imageRepWithData:[nativeImage(image.get()) TIFFRepresentation]];
        const double scale = static_cast<double>([pixels pixelsWide]) / drawing.width;
        NSColor* color = [pixels colorAtX:static_cast<NSInteger>(x * scale)
                                        y:static_cast<NSInteger>((drawing.height - y) * scale)];
        return {[color redComponent], [color greenComponent], [color blueComponent], [color alphaComponent]};
    }
}

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

TEST(CocoaImageTest, GrowsUpwards)
{
    const Drawing drawing{20, 20, false, {FillOval{{2, 12, 6, 6}, {ColorRole::systemGreen}}}};
    EXPECT_GT(pixelAt(drawing, 5, 15).alpha, 0.9);
    EXPECT_EQ(pixelAt(drawing, 5, 5).alpha, 0);
    EXPECT_EQ(pixelAt(drawing, 15, 15).alpha, 0);
}

TEST(CocoaImageTest, RoundsTheEndsOfALine)
{
    const Drawing drawing{20, 20, false, {StrokeLine{{10, 4}, {10, 16}, 6, {ColorRole::systemGreen}}}};
    EXPECT_GT(pixelAt(drawing, 10, 2).alpha, 0.6) << "beyond the end, within the cap";
    EXPECT_LT(pixelAt(drawing, 7.5, 1.5).alpha, 0.5) << "the cap's corner is cut off";
}

TEST(CocoaImageTest, DrawsAGrooveWithLessThanHalfOfItsColor)
{
    const auto drawing = [](double alpha) {
        return Drawing{20, 20, false, {FillOval{{4, 4, 12, 12}, {ColorRole::systemGreen, alpha}}}};
    };
    EXPECT_NEAR(pixelAt(drawing(0.45), 10, 10).alpha, 0.45, 0.02);
    EXPECT_NEAR(pixelAt(drawing(1), 10, 10).alpha, 1, 0.02);
}

TEST(CocoaImageTest, ThePlayingIconIsGreenWithAnOrangeArm)
{
    const auto icon = statusIcon(true);
    const auto disc = pixelAt(icon, 8, 8);
    const auto arm = pixelAt(icon, 13.5, 12.5);
    EXPECT_GT(disc.green, disc.red);
    EXPECT_GT(arm.red, arm.green);
    EXPECT_GT(arm.green, arm.blue);
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
