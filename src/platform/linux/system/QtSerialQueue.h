// The serial queue of one thread, on its event loop.
#pragma once

#include "ports/Queues.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <deque>
#include <mutex>
#include <utility>

namespace sonvara {

/// Tasks run on the thread to which the object belongs, one per event, so that they keep their order also when
/// one of them runs an event loop of its own. Those that have not run are destroyed with it.
///
/// They are handed over under a lock of its own: a thread sanitizer does not see those within Qt.
class QtSerialQueue final : public QObject {
public:
    /// Any thread. Never blocks.
    void post(Task task)
    {
        {
            const std::lock_guard lock(mutex_);
            tasks_.push_back(std::move(task));
        }
        // Without the lock: the other thread wakes at once, and would have to wait for it.
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

protected:
    // Each event stands for one of the tasks, whichever is the first by then.
    void customEvent(QEvent* /*event*/) override { takeFirst()(); }

private:
    Task takeFirst()
    {
        const std::lock_guard lock(mutex_);
        Task task = std::move(tasks_.front());
        tasks_.pop_front();
        return task;
    }

    std::mutex mutex_;  // guards the tasks
    std::deque<Task> tasks_;
};

}  // namespace sonvara
