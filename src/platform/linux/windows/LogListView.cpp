#include "platform/linux/windows/LogListView.h"

#include "platform/linux/style/ThemeWatcher.h"
#include "platform/linux/windows/LogMessageView.h"
#include "platform/linux/windows/LogModel.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextCursor>

namespace sonvara {

LogListView::LogListView(int rowSpacing, int columnSpacing, QWidget* parent)
    : QListView(parent),
      model_(new LogModel(this)),
      delegate_(new LogRowDelegate(rowSpacing, columnSpacing, *this))
{
    setModel(model_);
    setItemDelegate(delegate_);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setVerticalScrollMode(ScrollPerPixel);
    setResizeMode(Adjust);
    viewport()->setBackgroundRole(QPalette::Window);
    viewport()->setMouseTracking(true);  // the pointer tells where text can be selected
    connect(&ThemeWatcher::instance(), &ThemeWatcher::changed, this, &LogListView::doItemsLayout);
}

void LogListView::setRows(std::vector<LogRow> rows)
{
    const auto place = readersPlace();
    setAutoScroll(false);  // the row that is chosen may go, and another is chosen then
    model_->setRows(std::move(rows));
    setAutoScroll(true);
    restore(place);
}

LogRowDelegate::Parts LogListView::parts(const QModelIndex& index) const
{
    return delegate_->parts(visualRect(index), index);
}

LogListView::Place LogListView::readersPlace() const
{
    const bool selects = message_ && message_->textCursor().hasSelection();
    if (verticalScrollBar()->value() == 0 && !selects) return {};
    const auto first = indexAt(QPoint(0, 0));
    if (!first.isValid()) return {};
    return {first, parts(first).message.top()};
}

void LogListView::restore(const Place& place)
{
    if (!place.row.isValid()) return;
    doItemsLayout();  // at once, not with the next event: the reader would see the rows jump
    verticalScrollBar()->setValue(verticalScrollBar()->value() + parts(place.row).message.top() - place.top);
}

QModelIndex LogListView::messageAt(QPoint place) const
{
    const auto index = indexAt(place);
    return index.isValid() && parts(index).message.contains(place) ? index : QModelIndex();
}

LogMessageView* LogListView::openCurrent(Qt::FocusReason reason)
{
    openPersistentEditor(currentIndex());
    message_ = qobject_cast<LogMessageView*>(indexWidget(currentIndex()));
    message_->setFocus(reason);
    return message_;
}

void LogListView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    closePersistentEditor(previous);
    QListView::currentChanged(current, previous);
}

void LogListView::choose(const QModelIndex& index)
{
    setAutoScroll(false);
    setCurrentIndex(index);
    setAutoScroll(true);
}

// A message has no widget before it is pressed, so the first press comes here, with what belongs to it.
bool LogListView::viewportEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: return press(static_cast<QMouseEvent&>(*event));
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease: {
        const auto& mouse = static_cast<QMouseEvent&>(*event);
        const bool isText = messageAt(mouse.position().toPoint()).isValid();
        viewport()->setCursor(isText ? Qt::IBeamCursor : Qt::ArrowCursor);
        passOn(mouse);
        if (mouse.buttons() == Qt::NoButton) isSelecting_ = false;
        return true;
    }
    case QEvent::ContextMenu: {
        const auto& menu = static_cast<QContextMenuEvent&>(*event);
        const auto index = menu.reason() == QContextMenuEvent::Mouse ? messageAt(menu.pos()) : currentIndex();
        if (!index.isValid()) return true;
        choose(index);
        auto* const target = openCurrent(Qt::OtherFocusReason)->viewport();
        QContextMenuEvent there(menu.reason(), target->mapFromGlobal(menu.globalPos()), menu.globalPos());
        return QCoreApplication::sendEvent(target, &there);
    }
    default: return QListView::viewportEvent(event);
    }
}

bool LogListView::press(const QMouseEvent& event)
{
    const auto index = messageAt(event.position().toPoint());
    if (!index.isValid()) return true;
    choose(index);
    openCurrent(Qt::MouseFocusReason);
    isSelecting_ = true;
    passOn(event);
    return true;
}

void LogListView::passOn(const QMouseEvent& event)
{
    if (!isSelecting_ || !message_) return;
    auto* const target = message_->viewport();
    QMouseEvent there(event.type(), target->mapFrom(viewport(), event.position()), event.scenePosition(),
                      event.globalPosition(), event.button(), event.buttons(), event.modifiers());
    QCoreApplication::sendEvent(target, &there);
}

void LogListView::keyPressEvent(QKeyEvent* event)
{
    const bool opens = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (opens && currentIndex().isValid()) {
        openCurrent(Qt::OtherFocusReason);
    } else {
        QListView::keyPressEvent(event);
    }
}

}  // namespace sonvara
