#include "platform/linux/desktop/LogMessageView.h"

#include "platform/linux/desktop/StylePalette.h"
#include "platform/linux/desktop/ThemeWatcher.h"

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
    setPlainText(toQt(text.text));
    setAccessibleName(toQt(text.text));
    connect(&ThemeWatcher::instance(), &ThemeWatcher::changed, this, &LogMessageView::applyRoles);
}

int LogMessageView::heightForWidth(int width) const
{
    if (document()->textWidth() != width) document()->setTextWidth(width);
    return static_cast<int>(std::ceil(document()->size().height()));
}

QSize LogMessageView::sizeHint() const
{
    const int width = this->width() > 0 ? this->width() : 300;
    return {width, heightForWidth(width)};
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
    auto colors = QApplication::palette();
    colors.setColor(QPalette::Text, RoleColors::of(colors)[color_]);
    setPalette(colors);
}

}  // namespace sonvara
