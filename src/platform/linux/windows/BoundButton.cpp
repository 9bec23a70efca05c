#include "platform/linux/windows/BoundButton.h"

namespace sonvara {

BoundButton::BoundButton(const PushButton& button, Mnemonics& mnemonics, QWidget* parent)
    : QPushButton(parent),
      button_(button),
      key_(mnemonics.pick(QString::fromStdString(button.title())))
{
    refresh();
}

void BoundButton::refresh()
{
    const auto title = QString::fromStdString(button_.title());
    setText(withMnemonic(title, key_));
    setAccessibleName(title);
    setEnabled(button_.isEnabled());
}

}  // namespace sonvara
