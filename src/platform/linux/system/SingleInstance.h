// One running program for each session.
#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QString>
#include <functional>

namespace sonvara {

/// Main thread. The first program in a session owns its name on the session bus and serves the
/// freedesktop.org interface for applications there; a later one asks it to come to the front, and hands on the
/// activation token that its own launcher gave it.
/// Without a session bus every program is the first.
class SingleInstance final : public QDBusVirtualObject {
public:
    /// `activated` is called on the main thread when the user has started the program again.
    SingleInstance(QDBusConnection bus, std::function<void()> activated);
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    ~SingleInstance() override { release(); }

    /// Whether this is the first program. If not, the first one has been told to come to the front, or does
    /// not answer: it is asked for at most two seconds in all.
    [[nodiscard]] bool claim();

    /// Gives the name up, to be called when the program begins to end: who starts now is the first.
    void release();

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    [[nodiscard]] bool firstAnswers();

    QDBusConnection bus_;
    const std::function<void()> activated_;
    bool isFirst_ = false;
};

}  // namespace sonvara
