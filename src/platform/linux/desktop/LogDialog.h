// Draws a log sheet.
#pragma once

#include "platform/Form.h"
#include "platform/linux/desktop/Mnemonics.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QStackedWidget>

#include <functional>
#include <vector>

namespace sonvara {

class LogListView;

/// A dialog over one window, which waits until it is dismissed; Escape dismisses it, too. Main thread.
class LogDialog final : public QDialog {
    Q_OBJECT

public:
    LogDialog(LogSheet sheet, QWidget* window);

private:
    void addButton(QHBoxLayout& header, const PushButton& button, Mnemonics& mnemonics);
    void refresh();

    LogSheet sheet_;
    QStackedWidget* pages_;
    QWidget* empty_;
    LogListView* list_;
    std::vector<std::function<void()>> refreshers_;  ///< one for each button
    Subscription changes_;
};

}  // namespace sonvara
