#include "platform/linux/windows/LogDialog.h"

#include "helpers/EventLoop.h"
#include "platform/linux/windows/LogListView.h"
#include "platform/linux/windows/LogMessageView.h"
#include "windows/SampleForm.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

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

    LogMessageView* message(const QString& start)
    {
        for (auto* view : list().findChildren<LogMessageView*>()) {
            if (view->toPlainText().startsWith(start)) return view;
        }
        return nullptr;
    }

    /// Where a message is seen, from the top of the list.
    int seenAt(const QString& start) { return message(start)->mapTo(&list(), QPoint(0, 0)).y(); }

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
    EXPECT_EQ(message("entry 1 "), nullptr);
}

TEST_F(LogDialogTest, KeepsASelection)
{
    add(20);
    open();
    QTest::mouseDClick(message("entry 20")->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(message("entry 20")->textCursor().selectedText(), "entry");
    const auto seen = seenAt("entry 20");
    add(3);
    QCoreApplication::processEvents();
    EXPECT_EQ(message("entry 20")->textCursor().selectedText(), "entry");
    EXPECT_EQ(seenAt("entry 20"), seen);
}

TEST_F(LogDialogTest, WrapsALongMessageInItsRow)
{
    sample.rows = {SampleForm::row("2", "short"), SampleForm::row("1", std::string(500, 'x'))};
    open();
    EXPECT_GE(message("xxx")->height(), 4 * message("short")->height());
    EXPECT_LE(message("xxx")->mapTo(dialog.get(), QPoint(message("xxx")->width(), 0)).x(), dialog->width());
    const auto times = list().findChildren<QLabel*>();
    ASSERT_EQ(times.size(), 2);
    EXPECT_EQ(times[1]->mapTo(dialog.get(), QPoint()).y(), message("xxx")->mapTo(dialog.get(), QPoint()).y());
}

TEST_F(LogDialogTest, ShowsEveryLineOfEveryMessage)
{
    std::string message;
    for (int i = 0; i < 60; ++i) message += "word" + std::to_string(i) + ' ';
    for (int i = 0; i < 40; ++i) sample.rows.push_back(SampleForm::row(std::to_string(i), message));
    open();
    for (const auto* view : list().findChildren<LogMessageView*>()) {
        ASSERT_GE(view->height(), view->document()->size().height());
        ASSERT_GE(view->height(), 4 * view->fontMetrics().height());
    }
}

TEST_F(LogDialogTest, StaysQuickWithManyLongEntries)
{
    add(200);
    QElapsedTimer timer;
    timer.start();
    open();
    EXPECT_LT(timer.elapsed(), 3000);  // a wide limit, for sanitizers; a release build needs a tenth
    timer.start();
    for (int i = 0; i < 20; ++i) {
        sample.rows.pop_back();
        add(1);
        QCoreApplication::processEvents();
    }
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_EQ(list().findChildren<LogMessageView*>().size(), 200);
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
