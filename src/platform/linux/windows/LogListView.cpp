#include "platform/linux/windows/LogListView.h"

#include "platform/linux/style/StyledLabel.h"
#include "platform/linux/style/SymbolView.h"
#include "platform/linux/windows/LogMessageView.h"

#include <QScrollBar>

#include <algorithm>

namespace sonvara {

namespace {

constexpr int padding = 16;

}  // namespace

/// Time and symbol at the top, the message beside them.
class LogRowView final : public QWidget {
public:
    LogRowView(const LogRow& row, int spacing) : id_(row.id), message_(new LogMessageView(row.message))
    {
        auto* line = new QHBoxLayout(this);
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(spacing);
        line->addWidget(new StyledLabel(row.time), 0, Qt::AlignTop);
        line->addWidget(new SymbolView(row.symbol, row.symbolFont, row.symbolColor), 0, Qt::AlignTop);
        line->addWidget(message_, 1);
    }

    [[nodiscard]] const std::string& id() const { return id_; }
    [[nodiscard]] bool hasSelection() const { return message_->textCursor().hasSelection(); }

private:
    std::string id_;
    LogMessageView* message_;
};

LogListView::LogListView(int rowSpacing, int columnSpacing, QWidget* parent)
    : QScrollArea(parent),
      columnSpacing_(columnSpacing)
{
    auto* content = new QWidget;
    column_ = new QVBoxLayout(content);
    column_->setContentsMargins(padding, padding, padding, padding);
    column_->setSpacing(rowSpacing);
    column_->addStretch(1);
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setFocusPolicy(Qt::StrongFocus);  // the arrow keys scroll
}

void LogListView::setRows(const std::vector<LogRow>& rows)
{
    const auto place = readersPlace();
    update(rows);
    restore(place);
}

LogListView::Place LogListView::readersPlace() const
{
    const int top = verticalScrollBar()->value();
    const bool selects = std::ranges::any_of(rows_, [](const auto* row) { return row->hasSelection(); });
    if (top == 0 && !selects) return {};
    const auto first =
        std::ranges::find_if(rows_, [top](const auto* row) { return row->geometry().bottom() >= top; });
    if (first == rows_.end()) return {};
    return {*first, (*first)->y() - top};
}

void LogListView::restore(const Place& place)
{
    if (!place.row) return;
    // At once, not with the next event: the reader would see the rows jump.
    auto* content = widget();
    column_->invalidate();
    content->resize(content->width(),
                    std::max(viewport()->height(), column_->totalHeightForWidth(content->width())));
    column_->activate();
    verticalScrollBar()->setRange(0, std::max(0, content->height() - viewport()->height()));
    verticalScrollBar()->setValue(place.row->y() - place.offset);
}

void LogListView::update(const std::vector<LogRow>& rows)
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (dropUntil(i, rows[i].id)) continue;
        auto* row = new LogRowView(rows[i], columnSpacing_);
        rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(i), row);
        column_->insertWidget(static_cast<int>(i), row);
        row->show();
    }
    dropFrom(rows.size());
}

/// Drops the rows before the one called `id`, if it is at `position` or later; says whether it is.
bool LogListView::dropUntil(std::size_t position, const std::string& id)
{
    const auto begin = rows_.begin() + static_cast<std::ptrdiff_t>(position);
    const auto found = std::find_if(begin, rows_.end(), [&id](const auto* row) { return row->id() == id; });
    if (found == rows_.end()) return false;
    std::for_each(begin, found, [](auto* row) { delete row; });
    rows_.erase(begin, found);
    return true;
}

void LogListView::dropFrom(std::size_t position)
{
    for (auto i = position; i < rows_.size(); ++i) delete rows_[i];
    rows_.resize(std::min(position, rows_.size()));
}

}  // namespace sonvara
