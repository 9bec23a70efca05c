// Ends the program in good order where no window can be shown.
#pragma once

#include <QtGlobal>

namespace sonvara {

/// While it lives, and while QApplication is made, Qt's messages are held back. Where Qt finds no display
/// that it can use it aborts; the process ends in place of that with EXIT_FAILURE, and one sentence on
/// standard error says what is missing. When all is well, its end hands what was held to the handler that was
/// there before. One at a time.
class DisplayCheck {
public:
    DisplayCheck();
    ~DisplayCheck();
    DisplayCheck(const DisplayCheck&) = delete;
    DisplayCheck& operator=(const DisplayCheck&) = delete;

private:
    const QtMessageHandler previous_;
};

}  // namespace sonvara
