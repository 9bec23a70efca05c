// Waiting for what Qt's event loop brings.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <functional>

namespace sonvara::test {

/// Main thread: runs the event loop until `condition` holds; false when it does not within the time.
inline bool eventually(const std::function<bool()>& condition,
                       std::chrono::milliseconds time = std::chrono::seconds(20))
{
    const QDeadlineTimer limit(time);
    QTimer look;  // another thread may fulfil it without an event here
    look.start(10);
    bool holds = condition();
    for (; !holds && !limit.hasExpired(); holds = condition())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return holds;
}

/// Runs what is due now, also the deletion of objects.
inline void runEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace sonvara::test
