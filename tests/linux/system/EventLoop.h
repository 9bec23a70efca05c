// Runs Qt's event loop for a test.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

namespace sonvara {

/// Main thread: handles events until `condition` holds. Returns whether it did within 20 seconds.
template <typename Condition>
bool runEventLoopUntil(Condition condition)
{
    const QDeadlineTimer limit(20000);
    while (!condition()) {
        if (limit.hasExpired()) return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 10);
    }
    return true;
}

}  // namespace sonvara
