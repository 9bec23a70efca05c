// Draws the rows of a log that are in sight.
#pragma once

#include "ports/Form.h"

#include <QAbstractItemDelegate>
#include <QAbstractItemView>
#include <QRect>

namespace sonvara {

/// Time and symbol at a row's top, the message beside them. Where the view has an editor open, that shows the message.
/// Main thread.
class LogRowDelegate final : public QAbstractItemDelegate {
    Q_OBJECT

public:
    /// Spacings in pixels: between two rows, and between the parts of a row. Its views show a `LogModel`.
    LogRowDelegate(int rowSpacing, int columnSpacing, QAbstractItemView& view);

    /// Where the parts of a row stand. The time and the symbol are as large as they are, the message takes the rest.
    struct Parts {
        QRect time;
        QRect symbol;
        QRect message;
    };
    /// `row` is the rectangle of `index` in its view.
    [[nodiscard]] Parts parts(const QRect& row, const QModelIndex& index) const;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// A `LogMessageView`.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

private:
    [[nodiscard]] int spaceAbove(const QModelIndex& index) const;
    [[nodiscard]] static int spaceBelow(const QModelIndex& index);

    int rowSpacing_;
    int columnSpacing_;
    QAbstractItemView& view_;
};

}  // namespace sonvara
