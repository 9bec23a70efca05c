// Draws a log sheet.
#pragma once

#include "ports/Form.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QStackedWidget>

#include <vector>

namespace sonvara {

class BoundButton;
class LogListView;
class Mnemonics;

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
    std::vector<BoundButton*> buttons_;
    Subscription changes_;
};

}  // namespace sonvara
