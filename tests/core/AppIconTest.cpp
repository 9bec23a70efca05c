// The application's icon: the playing record, enlarged, on a dark disc.
#include "ui/AppIcon.h"

#include "ui/StatusIcon.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <variant>
#include <vector>

namespace sonvara::test {
namespace {

/// Where a step begins, its extent and the width of its line.
std::vector<double> measuresOf(const DrawingStep& step)
{
    if (const auto* ring = std::get_if<StrokeOval>(&step))
        return {ring->bounds.x, ring->bounds.y, ring->bounds.width, ring->bounds.height, ring->lineWidth};
    if (const auto* disc = std::get_if<FillOval>(&step))
        return {disc->bounds.x, disc->bounds.y, disc->bounds.width, disc->bounds.height};
    const auto& line = std::get<StrokeLine>(step);
    return {line.from.x, line.from.y, line.to.x, line.to.y, line.lineWidth};
}

ColorRole colorOf(const DrawingStep& step)
{
    return std::visit([](const auto& each) { return each.color.role; }, step);
}

TEST(AppIconTest, IsTheDrawingOfThePlayingRecordEnlargedOnADisc)
{
    const auto record = statusIcon(true);
    const auto icon = appIcon(180);
    EXPECT_DOUBLE_EQ(icon.width, 180);
    EXPECT_DOUBLE_EQ(icon.height, 180);
    EXPECT_FALSE(icon.isTemplate) << "it keeps its colours";
    ASSERT_EQ(icon.steps.size(), record.steps.size() + 1);
    for (std::size_t i = 0; i < record.steps.size(); ++i) {
        const auto original = measuresOf(record.steps[i]);
        const auto enlarged = measuresOf(icon.steps[i + 1]);
        ASSERT_EQ(enlarged.size(), original.size());
        for (std::size_t j = 0; j < original.size(); ++j) EXPECT_NEAR(enlarged[j], 10 * original[j], 1e-9);
        EXPECT_EQ(colorOf(icon.steps[i + 1]), colorOf(record.steps[i]));
    }
}

TEST(AppIconTest, HasItsDiscInsideThePictureAndAroundTheRecord)
{
    const auto icon = appIcon(180);
    const auto& disc = std::get<FillOval>(icon.steps[0]);
    for (const auto begin : {disc.bounds.x, disc.bounds.y}) EXPECT_NEAR(begin, 4, 1e-9);
    for (const auto length : {disc.bounds.width, disc.bounds.height}) EXPECT_NEAR(length, 172, 1e-9);
    EXPECT_EQ(disc.color.role, ColorRole::label);
    const auto& rim = std::get<StrokeOval>(icon.steps[1]);
    EXPECT_LT(disc.bounds.x, rim.bounds.x - rim.lineWidth / 2);
}

}  // namespace
}  // namespace sonvara::test
