// A message of the log, and the widget that selects in it.
#pragma once

#include "ports/Style.h"

#include <QTextEdit>

class QTextDocument;

namespace sonvara {

/// Makes `document` hold `text` as the log shows it: without a margin, a word that is too long for a line broken.
/// Main thread.
void setUpMessage(QTextDocument& document, const StyledText& text);

/// Shows what `setUpMessage` does, and lets it be selected by the mouse and by the keys, and copied. Main thread.
class LogMessageView final : public QTextEdit {
    Q_OBJECT

public:
    explicit LogMessageView(const StyledText& text, QWidget* parent = nullptr);

protected:
    void focusOutEvent(QFocusEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void applyRoles();

    FontRole font_;
    ColorRole color_;
};

}  // namespace sonvara
