#include "platform/linux/windows/LogRowDelegate.h"

#include "platform/linux/style/StylePalette.h"
#include "platform/linux/style/SymbolIcons.h"
#include "platform/linux/windows/LogMessageView.h"
#include "platform/linux/windows/LogModel.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace sonvara {

namespace {

constexpr int padding = 16;  // around all rows

const LogRow& rowAt(const QModelIndex& index)
{
    return static_cast<const LogModel*>(index.model())->row(index);
}

int symbolSide(const LogRow& row)
{
    return QFontMetrics(roleFont(row.symbolFont)).height();
}

QSize timeSize(const LogRow& row)
{
    const QFontMetrics metrics(roleFont(row.time.font));
    return metrics.size(Qt::TextSingleLine, QString::fromStdString(row.time.text));
}

void drawFocus(QPainter& painter, const QStyleOptionViewItem& option, const QRect& around)
{
    QStyleOptionFocusRect frame;
    frame.QStyleOption::operator=(option);
    frame.rect = around;
    QApplication::style()->drawPrimitive(QStyle::PE_FrameFocusRect, &frame, &painter, option.widget);
}

}  // namespace

LogRowDelegate::LogRowDelegate(int rowSpacing, int columnSpacing, QAbstractItemView& view)
    : QAbstractItemDelegate(&view),
      rowSpacing_(rowSpacing),
      columnSpacing_(columnSpacing),
      view_(view)
{}

int LogRowDelegate::spaceAbove(const QModelIndex& index) const
{
    return index.row() == 0 ? padding : rowSpacing_;
}

int LogRowDelegate::spaceBelow(const QModelIndex& index)
{
    return index.row() == index.model()->rowCount() - 1 ? padding : 0;
}

LogRowDelegate::Parts LogRowDelegate::parts(const QRect& row, const QModelIndex& index) const
{
    const auto& shown = rowAt(index);
    const auto inner = row.adjusted(padding, spaceAbove(index), -padding, -spaceBelow(index));
    const QRect time(inner.topLeft(), timeSize(shown));
    const int side = symbolSide(shown);
    const QRect symbol(time.right() + 1 + columnSpacing_, inner.top(), side, side);
    const QRect message(QPoint(symbol.right() + 1 + columnSpacing_, inner.top()), inner.bottomRight());
    return {time, symbol, message};
}

QSize LogRowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const
{
    const auto& row = rowAt(index);
    const int width = view_.viewport()->width();
    QTextDocument message;
    setUpMessage(message, row.message);
    message.setTextWidth(parts({0, 0, width, 0}, index).message.width());
    const int height = std::max(
        {timeSize(row).height(), symbolSide(row), static_cast<int>(std::ceil(message.size().height()))});
    return {width, spaceAbove(index) + height + spaceBelow(index)};
}

void LogRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const
{
    const auto& row = rowAt(index);
    const auto places = parts(option.rect, index);
    const auto colors = RoleColors::of(QApplication::palette());
    painter->save();
    painter->setFont(roleFont(row.time.font));
    painter->setPen(colors[row.time.color]);
    painter->drawText(places.time, Qt::TextSingleLine | Qt::TextDontClip,
                      QString::fromStdString(row.time.text));
    paintSymbol(*painter, row.symbol.name, places.symbol, colors[row.symbolColor]);
    if (!view_.isPersistentEditorOpen(index)) {
        QTextDocument message;
        setUpMessage(message, row.message);
        message.setTextWidth(places.message.width());
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette.setColor(QPalette::Text, colors[row.message.color]);
        painter->translate(places.message.topLeft());
        message.documentLayout()->draw(painter, context);
    }
    painter->restore();
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        const int around = rowSpacing_ / 2;
        drawFocus(*painter, option,
                  places.time.united(places.message).adjusted(-around, -around, around, around));
    }
}

QWidget* LogRowDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                      const QModelIndex& index) const
{
    return new LogMessageView(rowAt(index).message, parent);
}

void LogRowDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                          const QModelIndex& index) const
{
    editor->setGeometry(parts(option.rect, index).message);
}

}  // namespace sonvara
