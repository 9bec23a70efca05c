// The log's window: its rows, its reader's place, and how quick it is.
#include "LogDialogFixture.h"

#include <QAccessible>

#include <cstddef>
#include <ctime>
#include <string>

namespace sonvara::test {

namespace {

using LogDialogTest = LogDialogFixture;

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
