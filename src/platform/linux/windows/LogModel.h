// The rows of a log as a list model.
#pragma once

#include "ports/Form.h"

#include <QAbstractListModel>

#include <string>
#include <vector>

namespace sonvara {

/// Its texts are the messages; for a screen reader the times stand before them. Main thread.
class LogModel final : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    /// Replaces the rows. One whose id was there before stays the same row to the views.
    void setRows(std::vector<LogRow> rows);
    [[nodiscard]] const LogRow& row(const QModelIndex& index) const
    {
        return rows_[static_cast<std::size_t>(index.row())];
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    [[nodiscard]] bool dropUntil(std::size_t position, const std::string& id);
    void drop(std::size_t first, std::size_t last);

    std::vector<LogRow> rows_;
};

}  // namespace sonvara
