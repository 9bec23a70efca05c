// Waiting for what the event loop brings.
#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <functional>

namespace sonvara {

/// Runs the event loop until `condition` holds; false when it does not within ten seconds.
inline bool runUntil(const std::function<bool()>& condition)
{
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(10'000);
    while (!condition() && limit.isActive())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    return condition();
}

/// Runs what is due now, also the deletion of objects.
inline void runEvents()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace sonvara
