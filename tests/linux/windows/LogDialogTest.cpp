#include "platform/linux/windows/LogDialog.h"

#include "helpers/EventLoop.h"
#include "platform/linux/windows/LogListView.h"
#include "platform/linux/windows/LogMessageView.h"
#include "platform/linux/windows/LogModel.h"
#include "windows/SampleForm.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

#include <ctime>

namespace sonvara::test {

namespace {

class LogDialogTest : public testing::Test {
protected:
    void SetUp() override { window.show(); }
    void TearDown() override { runEvents(); }

    void open()
    {
        dialog = std::make_unique<LogDialog>(sample.sheet(), &window);
        dialog->show();
        QCoreApplication::processEvents();
    }

    void add(int count)
    {
        for (int i = 0; i < count; ++i) {
            const auto number = std::to_string(++total);
            sample.rows.insert(sample.rows.begin(),
                               SampleForm::row(number, "entry " + number + std::string(300, ' ') + "end"));
        }
        sample.logChanged.call();
    }

    LogListView& list() { return *dialog->findChild<LogListView*>(); }
    QScrollBar& bar() { return *list().verticalScrollBar(); }

    /// The row whose message begins so.
    QModelIndex row(const QString& start)
    {
        const auto& rows = list().rows();
        const auto found = rows.match(rows.index(0), Qt::DisplayRole, start, 1, Qt::MatchStartsWith);
        return found.isEmpty() ? QModelIndex() : found.first();
    }
    LogRowDelegate::Parts parts(const QString& start) { return list().parts(row(start)); }
    /// Where a message is seen, from the top of the list.
    int seenAt(const QString& start) { return parts(start).message.top(); }

    void doubleClick(const QString& start)
    {
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {},
                           parts(start).message.topLeft() + QPoint(5, 5));
    }
    /// The one widget of a message; null when there is none.
    LogMessageView* message() { return list().findChild<LogMessageView*>(); }
    QString selected() { return message() == nullptr ? QString() : message()->textCursor().selectedText(); }
    /// What has the keyboard.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(dialog->focusWidget(), key, modifiers);
    }

    SampleForm sample;
    int total = 0;
    QWidget window;
    std::unique_ptr<LogDialog> dialog;
};

TEST_F(LogDialogTest, KeepsThePlaceOfAReader)
{
    add(60);
    open();
    bar().setValue(bar().maximum() / 2);
    const auto place = bar().value();
    const auto seen = seenAt("entry 30");
    add(5);
    EXPECT_EQ(seenAt("entry 30"), seen);
    QCoreApplication::processEvents();
    EXPECT_EQ(seenAt("entry 30"), seen);
    EXPECT_GT(bar().value(), place);
}

TEST_F(LogDialogTest, KeepsThePlaceWhileOldRowsGo)
{
    add(60);
    open();
    bar().setValue(bar().maximum() / 2);
    const auto seen = seenAt("entry 30");
    sample.rows.resize(50);
    add(2);
    QCoreApplication::processEvents();
    EXPECT_EQ(seenAt("entry 30"), seen);
    EXPECT_FALSE(row("entry 1 ").isValid());
}

TEST_F(LogDialogTest, KeepsThePlaceOfAReaderOfTheFirstRow)
{
    add(60);
    open();
    bar().setValue(5);
    const auto seen = seenAt("entry 60");
    add(1);
    QCoreApplication::processEvents();
    EXPECT_EQ(seenAt("entry 60"), seen);
}

TEST_F(LogDialogTest, KeepsASelection)
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

TEST_F(LogDialogTest, SelectsWhatTheMouseIsDraggedOverAndCopiesIt)
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

TEST_F(LogDialogTest, HasOneSelectionAtATime)
{
    add(3);
    open();
    doubleClick("entry 3");
    doubleClick("entry 1");
    runEvents();
    EXPECT_EQ(list().findChildren<LogMessageView*>().size(), 1);
    EXPECT_EQ(message()->geometry(), parts("entry 1").message);
}

TEST_F(LogDialogTest, IsReadAndCopiedByTheKeys)
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

TEST_F(LogDialogTest, TheArrowKeysLeaveAnOpenedMessageAndDoNotFallIntoIt)
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

TEST_F(LogDialogTest, TellsAScreenReaderEachEntry)
{
    add(2);
    open();
    auto* const reader = QAccessible::queryAccessibleInterface(&list());
    EXPECT_EQ(reader->role(), QAccessible::List);
    EXPECT_EQ(reader->text(QAccessible::Name), "Log");
    ASSERT_EQ(reader->childCount(), 2);
    for (int i = 0; i < 2; ++i) {
        const auto& row = sample.rows[static_cast<std::size_t>(i)];
        EXPECT_EQ(reader->child(i)->role(), QAccessible::ListItem);
        EXPECT_EQ(reader->child(i)->text(QAccessible::Name).toStdString(),
                  row.time.text + " " + row.message.text);
        EXPECT_FALSE(reader->child(i)->state().editable);
    }
    doubleClick("entry 2");
    auto* const opened = QAccessible::queryAccessibleInterface(message());
    ASSERT_NE(opened->textInterface(), nullptr);
    int start = 0;
    int end = 0;
    opened->textInterface()->selection(0, &start, &end);
    EXPECT_EQ(opened->textInterface()->text(start, end), "entry");
    EXPECT_TRUE(opened->state().readOnly);
}

TEST_F(LogDialogTest, WrapsALongMessageInItsRow)
{
    sample.rows = {SampleForm::row("2", "short"), SampleForm::row("1", std::string(500, 'x'))};
    open();
    const auto wrapped = parts("xxx");
    EXPECT_GE(wrapped.message.height(), 4 * parts("short").message.height());
    EXPECT_LE(wrapped.message.right(), list().viewport()->width() - 16);
    EXPECT_EQ(wrapped.time.top(), wrapped.message.top());
    EXPECT_EQ(wrapped.symbol.top(), wrapped.message.top());
}

TEST_F(LogDialogTest, KeepsTheSheetsSpacings)
{
    add(2);
    open();
    const auto first = parts("entry 2");
    const auto second = parts("entry 1");
    EXPECT_EQ(first.time.topLeft(), QPoint(16, 16));
    EXPECT_EQ(first.symbol.left() - first.time.right() - 1, 8);
    EXPECT_EQ(first.message.left() - first.symbol.right() - 1, 8);
    EXPECT_EQ(first.message.right(), list().viewport()->width() - 16 - 1);
    EXPECT_EQ(second.message.top() - first.message.bottom() - 1, 4);
    EXPECT_EQ(list().visualRect(row("entry 1")).bottom() - second.message.bottom(), 16);
}

// The widget that selects stands where the text was drawn, and draws the same.
TEST_F(LogDialogTest, LooksTheSameWithAMessageOpened)
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

TEST_F(LogDialogTest, MakesNoWidgetForARow)
{
    add(1);
    open();
    const auto before = dialog->findChildren<QWidget*>().size();
    add(199);
    bar().setValue(bar().maximum());
    runEvents();
    EXPECT_EQ(dialog->findChildren<QWidget*>().size(), before);
    EXPECT_EQ(list().rows().rowCount(), 200);
}

TEST_F(LogDialogTest, StaysQuickWithManyLongEntries)
{
    // Of the processor, as a busy machine may take its time; wide limits, for sanitizers: a release build needs a fiftieth.
    const auto milliseconds = [] { return std::clock() * 1000 / CLOCKS_PER_SEC; };
    add(200);
    auto begin = milliseconds();
    open();
    EXPECT_LT(milliseconds() - begin, 1500);
    begin = milliseconds();
    for (int i = 0; i < 20; ++i) {
        sample.rows.pop_back();
        add(1);
        QCoreApplication::processEvents();
    }
    EXPECT_LT(milliseconds() - begin, 2500);
}

TEST_F(LogDialogTest, PressesNoButtonOnMereEnter)
{
    add(1);
    open();
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    EXPECT_EQ(sample.copies, 0);
    EXPECT_TRUE(dialog->isVisible());
}

}  // namespace

}  // namespace sonvara::test
