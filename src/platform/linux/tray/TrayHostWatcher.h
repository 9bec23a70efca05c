// Knows whether the desktop has a place for tray items.
#pragma once

#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <optional>

namespace sonvara {

/// Follows the StatusNotifier watcher on the session bus, and whether a host draws what it collects: some
/// desktops run a watcher beside a tray of the older kind. Main thread; nothing blocks.
class TrayHostWatcher final : public QObject {
    Q_OBJECT

public:
    /// How long a desktop that is just starting may take to bring up its tray.
    static constexpr std::chrono::seconds patience{10};

    explicit TrayHostWatcher(std::chrono::milliseconds wait = patience);

    /// The watcher's bus name, which is also its interface.
    [[nodiscard]] static QString service();

    /// Whether a StatusNotifier host is there; absent until the watcher has told.
    [[nodiscard]] std::optional<bool> hasNotifierHost() const { return hasNotifierHost_; }
    /// Whether a tray of either kind is there.
    [[nodiscard]] bool hasHost() const;

    /// The watcher takes no item of ours: it counts as without a host until something changes there.
    void refuse() { take(false); }

Q_SIGNALS:
    /// A StatusNotifier host came, went, or was replaced by another one.
    void notifierHostChanged();
    /// Once, when the wait is over and there is no tray.
    void hostMissing();

private Q_SLOTS:
    void ask();

private:
    void ownerChanged(const QString& newOwner);
    void take(bool hasNotifierHost);

    QDBusServiceWatcher watcher_;
    QTimer wait_;
    std::optional<bool> hasNotifierHost_;
    int questions_ = 0;
};

}  // namespace sonvara
