#include "platform/linux/windows/LogMessageView.h"

#include "platform/linux/style/StylePalette.h"
#include "platform/linux/style/ThemeWatcher.h"

#include <QApplication>
#include <QFocusEvent>
#include <QTextCursor>
#include <QTextDocument>
#include <QWheelEvent>

#include <cmath>

namespace sonvara {

LogMessageView::LogMessageView(const StyledText& text, QWidget* parent)
    : QTextEdit(parent),
      font_(text.font),
      color_(text.color)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setFocusPolicy(Qt::ClickFocus);  // hundreds of messages are no stops on the way of the Tab key
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    viewport()->setAutoFillBackground(false);
    viewport()->setCursor(Qt::IBeamCursor);
    auto policy = QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    document()->setDocumentMargin(0);
    applyRoles();
    setPlainText(QString::fromStdString(text.text));
    setAccessibleName(QString::fromStdString(text.text));
    connect(&ThemeWatcher::instance(), &ThemeWatcher::changed, this, &LogMessageView::applyRoles);
}

// Measured in a document of its own: the one on the screen goes back to the width of the screen at once.
int LogMessageView::heightForWidth(int width) const
{
    QTextDocument measured;
    measured.setDefaultFont(font());
    measured.setDefaultTextOption(document()->defaultTextOption());
    measured.setDocumentMargin(document()->documentMargin());
    measured.setPlainText(toPlainText());
    measured.setTextWidth(width);
    return static_cast<int>(std::ceil(measured.size().height()));
}

// A text without the keyboard keeps its selection, but only one text at a time has one.
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
    updateGeometry();
    auto colors = QApplication::palette();
    colors.setColor(QPalette::Text, RoleColors::of(colors)[color_]);
    setPalette(colors);
}

}  // namespace sonvara
