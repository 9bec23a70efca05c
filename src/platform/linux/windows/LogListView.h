// The scrolling rows of a log.
#pragma once

#include "ports/Form.h"

#include <QPointer>
#include <QScrollArea>
#include <QVBoxLayout>

#include <string>
#include <vector>

namespace sonvara {

class LogRowView;

/// Shows log rows and follows their changes: a reader at the top sees new rows come, one who has
/// scrolled down or selected a text keeps both. Main thread.
class LogListView final : public QScrollArea {
    Q_OBJECT

public:
    /// Spacings in pixels: between two rows, and between the parts of a row.
    LogListView(int rowSpacing, int columnSpacing, QWidget* parent = nullptr);

    /// Replaces the rows. One whose id was there before keeps its widget.
    void setRows(const std::vector<LogRow>& rows);

private:
    /// A row on the screen and where it is seen.
    struct Place {
        QPointer<LogRowView> row;
        int offset = 0;
    };

    [[nodiscard]] Place readersPlace() const;
    void restore(const Place& place);
    void update(const std::vector<LogRow>& rows);
    [[nodiscard]] bool dropUntil(std::size_t position, const std::string& id);
    void dropFrom(std::size_t position);

    int columnSpacing_;
    QVBoxLayout* column_;
    std::vector<LogRowView*> rows_;
};

}  // namespace sonvara
