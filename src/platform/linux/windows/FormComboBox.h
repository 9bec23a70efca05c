// A combo box that a screen reader knows by its title.
#pragma once

#include <QComboBox>

namespace sonvara {

/// On Linux, Qt names a combo box by its current text and leaves the title to a relation that not every
/// reader follows. This one is named by its accessible name and has the current text as its value.
class FormComboBox final : public QComboBox {
    Q_OBJECT

public:
    explicit FormComboBox(QWidget* parent = nullptr);
};

}  // namespace sonvara
