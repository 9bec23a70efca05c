// The scrolling rows of a log.
#pragma once

#include "platform/linux/windows/LogRowDelegate.h"
#include "ports/Form.h"

#include <QListView>
#include <QPersistentModelIndex>
#include <QPointer>

#include <vector>

namespace sonvara {

class LogMessageView;
class LogModel;

/// Shows log rows and follows their changes: a reader at the top sees new rows come, one who has scrolled down or
/// selected a text keeps both. Only what is in sight is drawn, and a message has a widget only from the moment that
/// its text is selected, by the mouse or, after Return, by the keys. Main thread.
class LogListView final : public QListView {
    Q_OBJECT

public:
    /// Spacings in pixels: between two rows, and between the parts of a row.
    LogListView(int rowSpacing, int columnSpacing, QWidget* parent = nullptr);

    /// Replaces the rows. One whose id was there before stays where it is seen.
    void setRows(std::vector<LogRow> rows);

    [[nodiscard]] const LogModel& rows() const { return *model_; }
    /// Where the parts of a row stand in the viewport.
    [[nodiscard]] LogRowDelegate::Parts parts(const QModelIndex& index) const;

protected:
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    /// A row on the screen and where it is seen.
    struct Place {
        QPersistentModelIndex row;
        int top = 0;
    };

    [[nodiscard]] Place readersPlace() const;
    void restore(const Place& place);
    /// The row whose message is at `place` of the viewport.
    [[nodiscard]] QModelIndex messageAt(QPoint place) const;
    /// The widget that selects in the message of the current row.
    LogMessageView* openCurrent(Qt::FocusReason reason);
    /// Makes a row that is in sight the current one, and leaves it where it is seen.
    void choose(const QModelIndex& index);
    bool press(const QMouseEvent& event);
    void passOn(const QMouseEvent& event);

    LogModel* model_;
    LogRowDelegate* delegate_;
    QPointer<LogMessageView> message_;  ///< of the current row, once it is opened
    bool isSelecting_ = false;          ///< the mouse was pressed on it, and not yet released
};

}  // namespace sonvara
