// A label in the interface's own roles of font and colour.
#pragma once

#include "ports/Style.h"

#include <QLabel>

namespace sonvara {

/// Shows plain text, whatever characters it holds, and keeps its looks when the user's theme changes.
class StyledLabel final : public QLabel {
    Q_OBJECT

public:
    explicit StyledLabel(const StyledText& text, QWidget* parent = nullptr);

protected:
    bool event(QEvent* event) override;

private:
    void applyRoles();

    FontRole font_;
    ColorRole color_;
};

}  // namespace sonvara
