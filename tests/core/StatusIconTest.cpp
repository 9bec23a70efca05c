// The drawing steps of the status icon.
#include "ui/StatusIcon.h"

#include <gtest/gtest.h>

#include <variant>

namespace sonvara::test {
namespace {

void expectRect(const Rect& rect, double x, double y, double size)
{
    EXPECT_DOUBLE_EQ(rect.x, x);
    EXPECT_DOUBLE_EQ(rect.y, y);
    EXPECT_DOUBLE_EQ(rect.width, size);
    EXPECT_DOUBLE_EQ(rect.height, size);
}

void expectRing(const DrawingStep& step, double origin, double size, double lineWidth, ColorRole role,
                double alpha)
{
    const auto* ring = std::get_if<StrokeOval>(&step);
    ASSERT_NE(ring, nullptr);
    expectRect(ring->bounds, origin, origin, size);
    EXPECT_DOUBLE_EQ(ring->lineWidth, lineWidth);
    EXPECT_EQ(ring->color.role, role);
    EXPECT_DOUBLE_EQ(ring->color.alpha, alpha);
}

void expectDot(const DrawingStep& step, double origin, double y, double size, ColorRole role)
{
    const auto* dot = std::get_if<FillOval>(&step);
    ASSERT_NE(dot, nullptr);
    expectRect(dot->bounds, origin, y, size);
    EXPECT_EQ(dot->color.role, role);
    EXPECT_DOUBLE_EQ(dot->color.alpha, 1);
}

void expectRecordAndArm(const Drawing& icon, ColorRole primary, ColorRole accent)
{
    EXPECT_DOUBLE_EQ(icon.width, 18);
    EXPECT_DOUBLE_EQ(icon.height, 18);
    ASSERT_GE(icon.steps.size(), 6U);
    expectRing(icon.steps[0], 2, 14, 1.6, primary, 1);
    expectRing(icon.steps[1], 3.8, 10.4, 0.8, primary, 0.45);
    expectRing(icon.steps[2], 5, 8, 0.8, primary, 0.45);
    expectDot(icon.steps[3], 6.6, 6.6, 4.8, primary);
    const auto* arm = std::get_if<StrokeLine>(&icon.steps[4]);
    ASSERT_NE(arm, nullptr);
    EXPECT_DOUBLE_EQ(arm->from.x, 15);
    EXPECT_DOUBLE_EQ(arm->from.y, 14);
    EXPECT_DOUBLE_EQ(arm->to.x, 10.4);
    EXPECT_DOUBLE_EQ(arm->to.y, 10.4);
    EXPECT_DOUBLE_EQ(arm->lineWidth, 1.5);
    EXPECT_EQ(arm->color.role, accent);
    expectDot(icon.steps[5], 14.1, 13.1, 1.8, accent);
}

TEST(StatusIconTest, WhileNothingPlaysItIsATemplateInTheLabelColourWithoutStylus)
{
    const auto icon = statusIcon(false);
    EXPECT_TRUE(icon.isTemplate);
    EXPECT_EQ(icon.steps.size(), 6U);
    expectRecordAndArm(icon, ColorRole::label, ColorRole::label);
}

TEST(StatusIconTest, WhileMusicPlaysItIsGreenAndOrangeWithAStylusDotBesideTheCentre)
{
    const auto icon = statusIcon(true);
    EXPECT_FALSE(icon.isTemplate);
    ASSERT_EQ(icon.steps.size(), 7U);
    expectRecordAndArm(icon, ColorRole::systemGreen, ColorRole::systemOrange);
    expectDot(icon.steps[6], 9.5, 9.5, 1.6, ColorRole::systemOrange);
}

TEST(StatusIconTest, TheRimStaysInsideThePicture)
{
    const auto icon = statusIcon(true);
    const auto& rim = std::get<StrokeOval>(icon.steps[0]);
    EXPECT_GE(rim.bounds.x - rim.lineWidth / 2, 0);
    EXPECT_LE(rim.bounds.x + rim.bounds.width + rim.lineWidth / 2, icon.width);
}

}  // namespace
}  // namespace sonvara::test
