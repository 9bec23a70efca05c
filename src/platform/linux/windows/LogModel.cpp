#include "platform/linux/windows/LogModel.h"

#include <algorithm>
#include <utility>

namespace sonvara {

void LogModel::setRows(std::vector<LogRow> rows)
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (dropUntil(i, rows[i].id)) continue;
        beginInsertRows({}, static_cast<int>(i), static_cast<int>(i));
        rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(i), std::move(rows[i]));
        endInsertRows();
    }
    drop(rows.size(), rows_.size());
}

/// Drops the rows before the one called `id`, if it is at `position` or later; says whether it is.
bool LogModel::dropUntil(std::size_t position, const std::string& id)
{
    const auto begin = rows_.begin() + static_cast<std::ptrdiff_t>(position);
    const auto found = std::find_if(begin, rows_.end(), [&id](const auto& row) { return row.id == id; });
    if (found == rows_.end()) return false;
    drop(position, static_cast<std::size_t>(found - rows_.begin()));
    return true;
}

void LogModel::drop(std::size_t first, std::size_t last)
{
    if (first >= last) return;
    beginRemoveRows({}, static_cast<int>(first), static_cast<int>(last) - 1);
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(first),
                rows_.begin() + static_cast<std::ptrdiff_t>(last));
    endRemoveRows();
}

int LogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant LogModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid()) return {};
    const auto message = QString::fromStdString(row(index).message.text);
    if (role == Qt::DisplayRole) return message;
    if (role == Qt::AccessibleTextRole)
        return QString(QString::fromStdString(row(index).time.text) + QLatin1Char(' ') + message);
    return {};
}

}  // namespace sonvara
