// The floor of every announcement: hears the players' signals and hands each title to the speech daemon at
// once. It holds no state of a player, knows no rule, lowers nothing and may block.
#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QStringList>
#include <QVariantMap>

#include <cstdlib>
#include <libspeechd.h>

namespace {

class Announcer final : public QObject {
    Q_OBJECT

public:
    explicit Announcer(SPDConnection* speech) : speech_(speech) {}

public Q_SLOTS:
    void hear(const QString& /*interface*/, const QVariantMap& changed, const QStringList& /*invalidated*/)
    {
        const auto metadata =
            qdbus_cast<QVariantMap>(changed.value(QStringLiteral("Metadata")).value<QDBusArgument>());
        const auto title = metadata.value(QStringLiteral("xesam:title")).toString();
        if (!title.isEmpty()) spd_say(speech_, SPD_MESSAGE, title.toUtf8().constData());
    }

private:
    SPDConnection* speech_;
};

}  // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    SPDConnection* const speech = spd_open("floor", "main", nullptr, SPD_MODE_SINGLE);
    if (speech == nullptr) return EXIT_FAILURE;
    Announcer announcer(speech);
    const bool isConnected = QDBusConnection::sessionBus().connect(
        QString(), QStringLiteral("/org/mpris/MediaPlayer2"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
        {QStringLiteral("org.mpris.MediaPlayer2.Player")}, QString(), &announcer,
        SLOT(hear(QString, QVariantMap, QStringList)));
    return isConnected ? QCoreApplication::exec() : EXIT_FAILURE;
}

#include "signal_to_speech.moc"
