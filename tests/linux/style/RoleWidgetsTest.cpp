// What draws itself in the roles' colours: labels, symbols, the application's icon.
#include "platform/linux/style/Icons.h"
#include "platform/linux/style/StylePalette.h"
#include "platform/linux/style/StyledLabel.h"
#include "platform/linux/style/SymbolView.h"

#include <QApplication>
#include <QFontMetrics>
#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QWidget>
#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

QColor textColor(const QWidget& label)
{
    return label.palette().color(QPalette::WindowText);
}

TEST(StyledLabelTest, TakesTheColorsOfWhereItStands)
{
    QWidget window;
    window.setPalette(QPalette(QColor(0x30, 0x30, 0x30)));
    auto* const label = new StyledLabel({"<b>text</b>", FontRole::headline, ColorRole::secondaryLabel});
    EXPECT_EQ(label->text(), "<b>text</b>");
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
    EXPECT_TRUE(label->font().bold());
    EXPECT_EQ(textColor(*label), RoleColors::of(QApplication::palette()).secondaryLabel);
    label->setParent(&window);
    EXPECT_EQ(textColor(*label), RoleColors::of(window.palette()).secondaryLabel);
    EXPECT_NE(textColor(*label), RoleColors::of(QApplication::palette()).secondaryLabel);
}

TEST(SymbolViewTest, DrawsItsSymbolAsHighAsALine)
{
    SymbolView view(Symbol{"checkmark.circle.fill", "done"}, FontRole::headline, ColorRole::systemGreen);
    const int side = QFontMetrics(roleFont(FontRole::headline)).height();
    EXPECT_EQ(view.sizeHint(), QSize(side, side));
    EXPECT_EQ(view.accessibleName(), "done");
    view.resize(100, 100);
    EXPECT_EQ(view.grab().toImage().pixelColor(50, 90), RoleColors::of(view.palette()).systemGreen);
}

TEST(ApplicationIconTest, IsADarkDiscOnEveryGround)
{
    const auto colors = applicationIconColors();
    EXPECT_EQ(colors.label, QColor(0x1E, 0x20, 0x26));
    EXPECT_EQ(colors.systemGreen, RoleColors::on(Qt::black, Qt::white).systemGreen);
    EXPECT_EQ(colors.secondaryLabel, RoleColors::on(QColor(0x1E, 0x20, 0x26), Qt::white).secondaryLabel);
    const Drawing drawing{10, 10, false, {FillOval{{1, 1, 8, 8}, {ColorRole::label, 1}}}};
    const auto icon = applicationIcon(drawing);
    for (const auto mode : {QIcon::Normal, QIcon::Disabled})
        EXPECT_EQ(icon.pixmap(40, 40, mode).toImage().pixelColor(20, 20), colors.label);
    QPixmap canvas(40, 40);
    QPainter painter(&canvas);
    QIcon(icon).paint(&painter, 0, 0, 40, 40);
    painter.end();
    EXPECT_EQ(canvas.toImage().pixelColor(20, 20), colors.label);
}

}  // namespace

}  // namespace sonvara::test
