// A push button of the core's, in a form or a log.
#pragma once

#include "platform/linux/style/Mnemonics.h"
#include "ports/Form.h"

#include <QPushButton>

namespace sonvara {

/// Shows the title and the enabled state of `button` as they were at the last `refresh`; what a click does is
/// for the view to connect. Main thread.
class BoundButton final : public QPushButton {
    Q_OBJECT

public:
    /// Its access key is one that `mnemonics` has not handed out yet.
    BoundButton(const PushButton& button, Mnemonics& mnemonics, QWidget* parent = nullptr);

    void refresh();

private:
    PushButton button_;
    QChar key_;
};

}  // namespace sonvara
