#include "platform/linux/windows/FormWidget.h"

#include "helpers/EventLoop.h"
#include "platform/linux/style/StylePalette.h"
#include "platform/linux/windows/FormComboBox.h"
#include "windows/SampleForm.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

class FormWidgetTest : public testing::Test {
protected:
    void SetUp() override { widget.show(); }
    void TearDown() override { runEvents(); }

    QCheckBox& toggle(int index) { return *widget.findChildren<QCheckBox*>()[index]; }
    FormComboBox& picker() { return *widget.findChild<FormComboBox*>(); }
    QPushButton& button() { return *widget.findChild<QPushButton*>(); }

    SampleForm sample;
    FormWidget widget{sample.form()};
};

TEST_F(FormWidgetTest, TurnsASwitchOverWithTheSpaceKey)
{
    QTest::keyClick(&toggle(0), Qt::Key_Space);
    EXPECT_FALSE(sample.isOn);
}

TEST_F(FormWidgetTest, ShowsTextsAsTheyAre)
{
    for (const auto* label : widget.findChildren<QLabel*>()) {
        const bool isPlain = label->textFormat() == Qt::PlainText;
        EXPECT_TRUE(isPlain || label->buddy() != nullptr) << label->text().toStdString();
    }
}

TEST_F(FormWidgetTest, GivesEveryControlANameAndAKey)
{
    EXPECT_EQ(toggle(0).accessibleName(), "Switch R&D on");
    EXPECT_EQ(toggle(0).text(), "&Switch R&&D on");
    EXPECT_EQ(toggle(1).text(), "S&tubborn");
    EXPECT_EQ(button().text(), "&View log (0)");
    auto* reader = QAccessible::queryAccessibleInterface(&picker());
    EXPECT_EQ(reader->text(QAccessible::Name), "Engine");
    EXPECT_EQ(reader->text(QAccessible::Value), "Second");
    EXPECT_EQ(reader->role(), QAccessible::ComboBox);
    ASSERT_EQ(reader->childCount(), 1);
    EXPECT_EQ(reader->child(0)->role(), QAccessible::List);
}

TEST_F(FormWidgetTest, MovesWithTheTabKeyFromTopToBottom)
{
    QList<QWidget*> order;
    toggle(0).setFocus();
    for (int i = 0; i < 4; ++i) {
        order.append(QApplication::focusWidget() == nullptr ? widget.focusWidget()
                                                            : QApplication::focusWidget());
        QTest::keyClick(order.last(), Qt::Key_Tab);
    }
    EXPECT_EQ(order, (QList<QWidget*>{&toggle(0), &toggle(1), &picker(), &button()}));
}

TEST_F(FormWidgetTest, GrowsWithALargerFont)
{
    const auto before = QApplication::font();
    auto large = before;
    large.setPointSizeF(before.pointSizeF() * 3);
    QApplication::setFont(large);
    EXPECT_TRUE(eventually([this] { return widget.sizeHint().height() > 420; }));
    EXPECT_EQ(widget.sizeHint().width(), 420);
    QApplication::setFont(before);
}

TEST_F(FormWidgetTest, FollowsTheTheme)
{
    const auto before = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(0x30, 0x30, 0x30)));
    QCoreApplication::processEvents();
    const auto colors = RoleColors::of(QApplication::palette());
    for (auto* label : widget.findChildren<QLabel*>()) {
        const auto color = label->palette().color(QPalette::WindowText);
        EXPECT_TRUE(color == colors.label || color == colors.secondaryLabel) << label->text().toStdString();
    }
    QApplication::setPalette(before);
}

}  // namespace

}  // namespace sonvara::test
