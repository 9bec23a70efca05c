// Selecting and copying in the log's window, by the mouse and by the keys.
#include "LogDialogFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>

namespace sonvara::test {

namespace {

using LogDialogSelectionTest = LogDialogFixture;

TEST_F(LogDialogSelectionTest, KeepsASelection)
{
    add(20);
    open();
    doubleClick("entry 20");
    EXPECT_EQ(selected(), "entry");
    const auto seen = seenAt("entry 20");
    add(3);
    QCoreApplication::processEvents();
    EXPECT_EQ(selected(), "entry");
    EXPECT_EQ(seenAt("entry 20"), seen);
    EXPECT_EQ(message()->geometry(), parts("entry 20").message);
    sample.rows.clear();
    sample.logChanged.call();
    runEvents();
    EXPECT_EQ(message(), nullptr) << "the row has gone";
}

TEST_F(LogDialogSelectionTest, SelectsWhatTheMouseIsDraggedOverAndCopiesIt)
{
    add(3);
    open();
    const auto place = parts("entry 2").message;
    auto* const surface = list().viewport();
    QTest::mousePress(surface, Qt::LeftButton, {}, place.topLeft() + QPoint(0, 3));
    QTest::mouseMove(surface, place.bottomRight() - QPoint(1, 3));
    QTest::mouseRelease(surface, Qt::LeftButton, {}, place.bottomRight() - QPoint(1, 3));
    EXPECT_EQ(selected(), list().rows().data(row("entry 2"), Qt::DisplayRole).toString());
    QGuiApplication::clipboard()->clear();
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), selected());
    QTest::mouseMove(surface, place.topLeft());
    EXPECT_EQ(selected().size(), message()->toPlainText().size()) << "the button was released";
}

TEST_F(LogDialogSelectionTest, HasOneSelectionAtATime)
{
    add(3);
    open();
    doubleClick("entry 3");
    doubleClick("entry 1");
    runEvents();
    EXPECT_EQ(list().findChildren<LogMessageView*>().size(), 1);
    EXPECT_EQ(message()->geometry(), parts("entry 1").message);
}

TEST_F(LogDialogSelectionTest, IsReadAndCopiedByTheKeys)
{
    add(60);
    open();
    list().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(list().currentIndex(), row("entry 60"));
    for (int i = 0; i < 30; ++i) press(Qt::Key_Down);
    EXPECT_EQ(list().currentIndex(), row("entry 30"));
    EXPECT_TRUE(list().viewport()->rect().contains(parts("entry 30").message));
    QGuiApplication::clipboard()->clear();
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              list().rows().data(row("entry 30"), Qt::DisplayRole).toString());

    press(Qt::Key_Return);
    EXPECT_EQ(dialog->focusWidget(), message());
    press(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(selected(), "entry ");
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "entry ");
    press(Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(LogDialogSelectionTest, TheArrowKeysLeaveAnOpenedMessageAndDoNotFallIntoIt)
{
    add(3);
    open();
    doubleClick("entry 2");
    list().setFocus(Qt::BacktabFocusReason);
    EXPECT_EQ(selected(), "entry");
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    runEvents();
    EXPECT_EQ(list().currentIndex(), row("entry 2"));
    EXPECT_EQ(dialog->focusWidget(), &list());
    EXPECT_EQ(message(), nullptr);
}

// The widget that selects stands where the text was drawn, and draws the same.
TEST_F(LogDialogSelectionTest, LooksTheSameWithAMessageOpened)
{
    sample.rows = {SampleForm::row("1", "A title (שיר) that is so long that it goes on in a second line of "
                                        "its row,\nand has a line feed, and\ta tab")};
    open();
    const auto before = list().viewport()->grab().toImage();
    const auto place = parts("A title").message;
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, place.center());
    ASSERT_NE(message(), nullptr);
    dialog->findChild<QPushButton*>()->setFocus(Qt::OtherFocusReason);  // takes the caret away
    EXPECT_EQ(list().viewport()->grab().toImage(), before);
}

}  // namespace

}  // namespace sonvara::test
