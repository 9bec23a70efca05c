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

/// Answers for the Spotify client and for the desktop's own music player, "Music", which is of all
/// other players the one that plays, else the one that changed last. Without a session bus no player
/// runs; one line in the log says so.
///
/// Made and destroyed on the main thread, which must run Qt's event loop. The ports must not be used
/// any more when it is destroyed; scripts that have waited for an answer have then ended or end as
/// failed, so wait for the worker threads afterwards or before.
class MprisPlayers {
public:
    MprisPlayers(const QDBusConnection& bus, SystemLog& log);
    ~MprisPlayers();
    MprisPlayers(const MprisPlayers&) = delete;
    MprisPlayers& operator=(const MprisPlayers&) = delete;

    [[nodiscard]] NotificationCenter& notificationCenter();
    /// Understands two scripts: for each of the two players the one that tells its track. Each ends within
    /// one second.
    [[nodiscard]] ScriptRunner& scriptRunner();

    /// The players' volumes.
    [[nodiscard]] VolumePlayers& volumes();
    /// From now on `keeper` is told what happens to them. It must outlive the events.
    void reportTo(LoweredPlayers& keeper);

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace sonvara
