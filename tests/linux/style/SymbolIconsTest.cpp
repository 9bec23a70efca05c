#include "platform/linux/style/SymbolIcons.h"

#include "helpers/Golden.h"

#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

TEST(SymbolIconsTest, FillMostOfTheirSquare)
{
    for (const char* name :
         {"music.note", "info.circle", "checkmark.circle.fill", "exclamationmark.triangle.fill"}) {
        const auto bounds = symbolPath(name).boundingRect();
        EXPECT_TRUE(QRectF(0, 0, 1, 1).contains(bounds)) << name;
        EXPECT_GT(bounds.height(), 0.75) << name;
        EXPECT_LT(std::abs(bounds.center().y() - 0.5), 0.06) << name;
    }
}

TEST(SymbolIconsTest, LookAsBefore)
{
    for (const char* name :
         {"music.note", "info.circle", "checkmark.circle.fill", "exclamationmark.triangle.fill"}) {
        // Two pixels for each unit of the outlines.
        QImage image(200, 200, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        paintSymbol(painter, name, QRectF(0, 0, 200, 200), Qt::black);
        painter.end();
        EXPECT_TRUE(looksAsBefore(image, name));
    }
}

TEST(SymbolIconsTest, DifferFromOneAnother)
{
    EXPECT_NE(symbolPath("info.circle"), symbolPath("checkmark.circle.fill"));
    EXPECT_NE(symbolPath("checkmark.circle.fill"), symbolPath("exclamationmark.triangle.fill"));
}

TEST(SymbolIconsTest, DoNotKnowEveryName)
{
    EXPECT_TRUE(symbolPath("no.such.symbol").isEmpty());
}

TEST(SymbolIconsTest, AreCutOutWhereTheirMarkIs)
{
    EXPECT_FALSE(symbolPath("checkmark.circle.fill").contains(QPointF(0.44, 0.67)));
    EXPECT_TRUE(symbolPath("checkmark.circle.fill").contains(QPointF(0.5, 0.85)));
    EXPECT_FALSE(symbolPath("exclamationmark.triangle.fill").contains(QPointF(0.5, 0.45)));
    EXPECT_FALSE(symbolPath("info.circle").contains(QPointF(0.3, 0.5)));
    EXPECT_TRUE(symbolPath("info.circle").contains(QPointF(0.5, 0.6)));
}

TEST(SymbolIconsTest, TakeTheirColor)
{
    QImage image(40, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintSymbol(painter, "checkmark.circle.fill", QRectF(0, 0, 40, 20), Qt::red);
    painter.end();
    EXPECT_EQ(image.pixelColor(20, 17), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(5, 10).alpha(), 0);  // the square lies in the middle
}

}  // namespace

}  // namespace sonvara::test
