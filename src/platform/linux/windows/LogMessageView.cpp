#include "platform/linux/windows/LogMessageView.h"

#include "platform/linux/style/StylePalette.h"
#include "platform/linux/style/ThemeWatcher.h"

#include <QApplication>
#include <QFocusEvent>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextOption>
#include <QWheelEvent>

namespace sonvara {

void setUpMessage(QTextDocument& document, const StyledText& text)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document.setUndoRedoEnabled(false);
    document.setDefaultTextOption(option);
    document.setDefaultFont(roleFont(text.font));
    document.setDocumentMargin(0);
    document.setPlainText(QString::fromStdString(text.text));
}

LogMessageView::LogMessageView(const StyledText& text, QWidget* parent)
    : QTextEdit(parent),
      font_(text.font),
      color_(text.color)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFocusPolicy(Qt::ClickFocus);  // the list is the stop on the way of the Tab key
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    viewport()->setAutoFillBackground(false);
    viewport()->setCursor(Qt::IBeamCursor);
    applyRoles();
    setUpMessage(*document(), text);
    moveCursor(QTextCursor::Start);
    setAccessibleName(QString::fromStdString(text.text));
    connect(&ThemeWatcher::instance(), &ThemeWatcher::changed, this, &LogMessageView::applyRoles);
}

// A text without the keyboard keeps its selection until the mouse is pressed elsewhere.
void LogMessageView::focusOutEvent(QFocusEvent* event)
{
    QTextEdit::focusOutEvent(event);
    if (event->reason() != Qt::MouseFocusReason) return;
    auto cursor = textCursor();
    cursor.clearSelection();
    setTextCursor(cursor);
}

void LogMessageView::wheelEvent(QWheelEvent* event)
{
    event->ignore();  // the list scrolls, not the message
}

void LogMessageView::applyRoles()
{
    setFont(roleFont(font_));
    auto colors = QApplication::palette();
    colors.setColor(QPalette::Text, RoleColors::of(colors)[color_]);
    setPalette(colors);
}

}  // namespace sonvara
