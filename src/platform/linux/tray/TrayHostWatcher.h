// Knows whether the desktop has a place for tray items.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>

#include <chrono>

namespace sonvara {

/// Follows the StatusNotifier watcher on the session bus as it comes, goes and comes back. Main thread.
class TrayHostWatcher final : public QObject {
    Q_OBJECT

public:
    /// How long a desktop that is just starting may take to bring up its tray.
    static constexpr std::chrono::seconds patience{10};

    explicit TrayHostWatcher(std::chrono::milliseconds wait = patience);

    /// The watcher's bus name, which is also its interface.
    [[nodiscard]] static QString service();

    /// Whether a StatusNotifier watcher runs.
    [[nodiscard]] bool hasNotifierHost() const { return hasNotifierHost_; }
    /// Whether a tray of either kind is there.
    [[nodiscard]] bool hasHost() const;

Q_SIGNALS:
    /// A StatusNotifier watcher came, went, or was replaced by another one.
    void notifierHostChanged();
    /// Once, when the wait is over and there is no tray.
    void hostMissing();

private:
    void ownerChanged(const QString& newOwner);

    QDBusServiceWatcher watcher_;
    QTimer wait_;
    bool hasNotifierHost_ = false;
};

}  // namespace sonvara
