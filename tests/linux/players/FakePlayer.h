// A player on the bus that does what the test says, good or bad.
#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include <functional>

namespace sonvara::test {

/// What a well-behaved player would write about a track.
[[nodiscard]] QVariantMap metadataOf(const QString& title, const QStringList& artists = {"Artist"},
                                     const QString& album = "Album");

/// Serves the properties of an MPRIS player on one connection. Nothing happens by itself: signals
/// are sent when told, whatever the properties are.
class FakePlayer final : public QDBusVirtualObject {
public:
    enum class Manner {
        proper,   ///< answers as the properties say
        hanging,  ///< never answers
        failing,  ///< answers with an error
        babbling  ///< answers with values of wrong types
    };

    /// Owns `org.mpris.MediaPlayer2.NAME` for each of `names`.
    FakePlayer(QDBusConnection connection, const QStringList& names);
    ~FakePlayer() override;

    void own(const QString& name);
    void disown(const QString& name);

    /// Changes properties silently.
    void set(const QVariantMap& properties) { properties_.insert(properties); }
    /// Changes properties and signals them in one message.
    void change(const QVariantMap& properties);
    /// Sends a signal that says what it says, whether it is so or not.
    void signal(const QVariantList& arguments);
    /// Signals that a property has changed, and not to what.
    void invalidate(const QString& property);

    /// A whole track change in one signal.
    void play(const QString& title);

    [[nodiscard]] QVariant property(const QString& name) const { return properties_.value(name); }
    [[nodiscard]] int questions() const { return questions_; }

    Manner manner = Manner::proper;
    QVariantMap introduction{{"Identity", "Fake player"}, {"DesktopEntry", "fake"}};
    bool refusesVolume = false;
    /// Called with each question before it is answered; with false it stays without an answer.
    std::function<bool(const QDBusMessage&)> onQuestion;

private:
    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    [[nodiscard]] QDBusMessage answer(const QDBusMessage& question);
    [[nodiscard]] QDBusMessage properAnswer(const QDBusMessage& question);

    QDBusConnection connection_;
    QVariantMap properties_{{"PlaybackStatus", "Stopped"}, {"Metadata", QVariantMap()}, {"Volume", 1.0}};
    int questions_ = 0;
};

}  // namespace sonvara::test
