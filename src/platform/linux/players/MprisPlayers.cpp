#include "platform/linux/players/MprisPlayers.h"

#include "platform/linux/players/MprisBus.h"
#include "platform/linux/players/MprisVolume.h"
#include "platform/linux/players/PlayerNotificationCenter.h"
#include "platform/linux/players/PlayerScriptRunner.h"
#include "platform/linux/players/PlayerWatch.h"

namespace sonvara {

struct MprisPlayers::Parts {
    Parts(const QDBusConnection& connection, SystemLog& log)
        : bus(connection),
          watch(
              bus, [this](PlayerKind kind, const std::string& answer) { runner.know(kind, answer); },
              [this](const Notification& each) { center.post(each); }, log),
          volume(bus, watch.directory()),
          runner([this](PlayerKind kind) { watch.poll(kind); })
    {}

    PlayerNotificationCenter center;
    MprisBus bus;
    PlayerWatch watch;
    MprisVolume volume;
    PlayerScriptRunner runner;
};

MprisPlayers::MprisPlayers(const QDBusConnection& bus, SystemLog& log)
    : parts_(std::make_unique<Parts>(bus, log))
{}

MprisPlayers::~MprisPlayers() = default;

NotificationCenter& MprisPlayers::notificationCenter()
{
    return parts_->center;
}

ScriptRunner& MprisPlayers::scriptRunner()
{
    return parts_->runner;
}

VolumePlayers& MprisPlayers::volumes()
{
    return parts_->volume;
}

void MprisPlayers::reportTo(LoweredPlayers& loweredPlayers)
{
    parts_->volume.reportTo(loweredPlayers);
}

}  // namespace sonvara
