#include "platform/linux/style/QtImageRenderer.h"

#include "helpers/Golden.h"
#include "helpers/PainterHook.h"
#include "ui/StatusIcon.h"

#include <gtest/gtest.h>

#include <thread>

namespace sonvara::test {

namespace {

const RoleColors onLight = RoleColors::on(Qt::white, Qt::black);
const RoleColors onDark = RoleColors::on(Qt::black, Qt::white);

Drawing dotAt(double x, double y, DrawingColor color = {ColorRole::systemGreen, 1})
{
    return {10, 10, false, {FillOval{{x - 2, y - 2, 4, 4}, color}}};
}

struct Look {
    const char* name;
    bool isPlaying;
    RoleColors colors;
};

void PrintTo(const Look& look, std::ostream* out)
{
    *out << look.name;
}

class StatusIconPictureTest : public testing::TestWithParam<Look> {};

TEST_P(StatusIconPictureTest, LooksAsBefore)
{
    const auto& [name, isPlaying, colors] = GetParam();
    for (const int side : {18, 36}) {
        const auto image = rasterize(statusIcon(isPlaying), {side, side}, colors);
        EXPECT_TRUE(looksAsBefore(image, QString("%1-%2").arg(name).arg(side)));
    }
}

INSTANTIATE_TEST_SUITE_P(Themes, StatusIconPictureTest,
                         testing::Values(Look{"silent", false, onLight}, Look{"silentOnDark", false, onDark},
                                         Look{"silentWithHalo", false, onLight.withHalo()},
                                         Look{"silentOnDarkWithHalo", false, onDark.withHalo()},
                                         Look{"playing", true, onLight}, Look{"playingOnDark", true, onDark}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(ImageRendererTest, DrawsAtAllSizesOnTheThreadThatAsks)
{
    std::shared_ptr<const Image> image;
    int painters = 0;
    std::thread([&] {
        image = QtImageRenderer().render(statusIcon(true));
        painters = paintersOfThisThread();
    }).join();
    EXPECT_GE(painters, QtImage::sides.size());
    const auto before = paintersOfThisThread();
    const auto pictures = dynamic_cast<const QtImage&>(*image).colored(onLight);
    EXPECT_EQ(paintersOfThisThread(), before) << "to colour is not to draw";
    ASSERT_EQ(pictures.size(), static_cast<qsizetype>(QtImage::sides.size()));
    for (qsizetype i = 0; i < pictures.size(); ++i) {
        const int side = QtImage::sides[static_cast<std::size_t>(i)];
        EXPECT_EQ(pictures[i], rasterize(statusIcon(true), {side, side}, onLight));
    }
}

TEST(ImageRendererTest, MakesNothingOfNoArea)
{
    EXPECT_EQ(QtImageRenderer().render({0, 18, false, {}}), nullptr);
    EXPECT_EQ(QtImageRenderer().render({18, -1, false, {}}), nullptr);
}

TEST(ImageRendererTest, GrowsUpwards)
{
    const auto image = rasterize(dotAt(2, 8), {20, 20}, onLight);
    EXPECT_EQ(image.pixelColor(4, 4), onLight.systemGreen);  // high y is at the top of the picture
    EXPECT_EQ(image.pixelColor(4, 16).alpha(), 0);
}

TEST(ImageRendererTest, ReplacesTheAlphaOfAColor)
{
    const auto image = rasterize(dotAt(5, 5, {ColorRole::systemOrange, 0.45}), {20, 20}, onLight);
    EXPECT_NEAR(image.pixelColor(10, 10).alphaF(), 0.45, 0.01);
}

TEST(ImageRendererTest, TintsOnlyTemplates)
{
    auto drawing = dotAt(5, 5);
    EXPECT_EQ(rasterize(drawing, {20, 20}, onDark).pixelColor(10, 10), onDark.systemGreen);
    drawing.isTemplate = true;
    EXPECT_EQ(rasterize(drawing, {20, 20}, onDark).pixelColor(10, 10), QColor(Qt::white));
    EXPECT_EQ(rasterize(drawing, {20, 20}, onLight).pixelColor(10, 10), QColor(Qt::black));
}

TEST(ImageRendererTest, FitsIntoTheMiddleOfAnotherShape)
{
    const auto image = rasterize(dotAt(5, 5), {40, 20}, onLight);
    EXPECT_EQ(image.pixelColor(20, 10), onLight.systemGreen);
    EXPECT_EQ(image.pixelColor(10, 10).alpha(), 0);
}

TEST(ImageRendererTest, RoundsTheEndsOfALine)
{
    const Drawing drawing{20, 20, false, {StrokeLine{{10, 4}, {10, 16}, 4, {ColorRole::label, 1}}}};
    const auto image = rasterize(drawing, {20, 20}, onLight);
    EXPECT_GT(image.pixelColor(10, 2).alpha(), 150);  // beyond the end, within the cap
    EXPECT_LT(image.pixelColor(8, 2).alpha(), 120);   // the cap's corner is cut off
}

}  // namespace

}  // namespace sonvara::test
