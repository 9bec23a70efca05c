// A session bus of the test's own.
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace sonvara::test {

/// A message bus daemon that lives as long as this object. Every connection made here is closed
/// with it.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] QString address() const { return address_; }

    /// A new connection of its own, with its own unique name.
    [[nodiscard]] QDBusConnection connect();

    /// Ends the daemon at once, as a crash does.
    void kill();

private:
    QTemporaryDir folder_;
    QProcess daemon_;
    QString address_;
    QStringList connections_;
};

/// Lets `child`, which has not started yet, not outlive a test that is killed.
void endWithThisProcess(QProcess& child);

}  // namespace sonvara::test
