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
              bus, [this](const Notification& each) { center.post(each); }, log),
          volume(bus, watch.directory()),
          runner([this](const auto& command, const auto& answer) { carryOut(command, answer); },
                 [this](const auto& command) { return known(command); })
    {}

    void carryOut(const ScriptCommand& command, const PlayerScriptRunner::Answer& answer)
    {
        watch.poll(command.player, answer);
    }

    // Any thread.
    [[nodiscard]] std::optional<ScriptResult> known(const ScriptCommand& command) const
    {
        return watch.pollBoard().read(command.player, std::chrono::steady_clock::now());
    }

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

void MprisPlayers::reportTo(LoweredPlayers& keeper)
{
    parts_->volume.reportTo(keeper);
}

}  // namespace sonvara
