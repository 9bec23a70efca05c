// A message of the log whose text can be selected.
#pragma once

#include "ports/Style.h"

#include <QTextEdit>

namespace sonvara {

/// As high as its text at the width it is given; a word that is too long for a line is broken.
class LogMessageView final : public QTextEdit {
    Q_OBJECT

public:
    explicit LogMessageView(const StyledText& text, QWidget* parent = nullptr);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }
    [[nodiscard]] QSize minimumSizeHint() const override { return {0, fontMetrics().height()}; }

protected:
    void focusOutEvent(QFocusEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void applyRoles();

    FontRole font_;
    ColorRole color_;
};

}  // namespace sonvara
