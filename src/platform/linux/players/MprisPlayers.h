// The music players of a Linux desktop: those that speak MPRIS on the session bus.
#pragma once

#include "ports/NotificationCenter.h"
#include "ports/ScriptRunner.h"
#include "ports/SystemLog.h"

#include <QDBusConnection>

#include <memory>

namespace sonvara {

class LoweredPlayers;
class VolumePlayers;

/// Answers for the Spotify client and for the desktop's own music player, "Music": of all other players the
/// one that plays, or else the one that changed last. Nothing is heard or asked before the first poll. Without
/// a session bus no player runs; one line in the log says so.
///
/// Made and destroyed on the main thread, which must run Qt's event loop. Nobody may use the ports when it is
/// destroyed, except that polls may still wait: they fail.
class MprisPlayers {
public:
    MprisPlayers(const QDBusConnection& bus, SystemLog& log);
    ~MprisPlayers();
    MprisPlayers(const MprisPlayers&) = delete;
    MprisPlayers& operator=(const MprisPlayers&) = delete;

    [[nodiscard]] NotificationCenter& notificationCenter();
    /// Understands two scripts: for each of the two players the poll. Each ends within one second.
    [[nodiscard]] ScriptRunner& scriptRunner();

    /// The players' volumes.
    [[nodiscard]] VolumePlayers& volumes();
    /// From now on `loweredPlayers` is told what happens to them. It must outlive the events.
    void reportTo(LoweredPlayers& loweredPlayers);

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace sonvara
