// The log's window with entries of the test's own, and the mouse and the keys in it.
#pragma once

#include "helpers/EventLoop.h"
#include "platform/linux/windows/LogDialog.h"
#include "platform/linux/windows/LogListView.h"
#include "platform/linux/windows/LogMessageView.h"
#include "platform/linux/windows/LogModel.h"
#include "windows/SampleForm.h"

#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace sonvara::test {

class LogDialogFixture : public testing::Test {
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

}  // namespace sonvara::test
