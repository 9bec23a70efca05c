// A fake player in a process of its own: `fake_player ADDRESS NAME...`. A line "TITLE" on standard
// input plays a track, "pause" pauses it; the end of the input ends the program. It writes "ready"
// when it has its names.
#include "FakePlayer.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <iostream>
#include <string>

#include <unistd.h>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const auto arguments = QCoreApplication::arguments();
    auto connection = QDBusConnection::connectToBus(arguments.value(1), "fake");
    if (!connection.isConnected()) return 1;
    sonvara::test::FakePlayer player(connection, arguments.mid(2));

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&player] {
        std::string line;
        if (!std::getline(std::cin, line))
            QCoreApplication::quit();
        else if (line == "pause")
            player.change({{"PlaybackStatus", "Paused"}});
        else
            player.play(QString::fromStdString(line));
    });
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
