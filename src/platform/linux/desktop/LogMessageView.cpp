#include "platform/linux/desktop/LogMessageView.h"

#include "platform/linux/desktop/StylePalette.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
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

bool LogMessageView::event(QEvent* event)
{
    const bool handled = QTextEdit::event(event);
    switch (event->type()) {
    case QEvent::ApplicationFontChange:
    case QEvent::ApplicationPaletteChange:
    case QEvent::PaletteChange:
    case QEvent::StyleChange: applyRoles(); break;
    default: break;
    }
    return handled;
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
    const auto wanted = roleFont(font_);
    if (font() != wanted) setFont(wanted);
    const auto color = RoleColors::of(palette())[color_];
    auto colors = palette();
    if (colors.color(QPalette::Active, QPalette::Text) == color) return;
    colors.setColor(QPalette::Text, color);
    setPalette(colors);
}

}  // namespace sonvara
