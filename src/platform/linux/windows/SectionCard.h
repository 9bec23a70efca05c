// The framed group of rows below a section's header.
#pragma once

#include <QVBoxLayout>
#include <QWidget>

namespace sonvara {

/// Stacks rows on a rounded ground with thin lines between them, in shades of the user's theme.
class SectionCard final : public QWidget {
    Q_OBJECT

public:
    explicit SectionCard(QWidget* parent = nullptr);

    /// Appends a row; takes ownership.
    void addRow(QWidget* row) { layout_->addWidget(row); }
    void addRow(QLayout* row) { layout_->addLayout(row); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* layout_;
};

}  // namespace sonvara
