#include "platform/linux/players/MprisVolume.h"

#include "platform/linux/players/MprisDecoder.h"

#include <chrono>
#include <utility>

namespace sonvara::players {
namespace {

ScriptResult notRunning(PlayerKind kind)
{
    return ScriptResult::ofError(std::string(nameOf(kind)) + " is not running");
}

}  // namespace

MprisVolume::MprisVolume(MprisBus& bus, const PlayerDirectory& directory) : bus_(bus), directory_(directory)
{
    connect(&bus, &MprisBus::stateSignalled, this, &MprisVolume::takeSignal);
}

void MprisVolume::read(PlayerKind kind, const Answer& answer)
{
    const auto* player = directory_.chosen(kind);
    if (player == nullptr) {
        answer(notRunning(kind));
        return;
    }
    auto lastRead = lastRead_.load() ? *lastRead_.load() : Programs();
    lastRead[std::string(nameOf(kind))] = player->names.front();
    lastRead_.store(std::move(lastRead));
    bus_.askVolume(player->owner, [this, answer, kind, owner = player->owner](const QVariantList& arguments) {
        const auto volume = decodeVolume(arguments.value(0));
        if (volume) holds_[kind].learn(owner, *volume);
        answer(volume ? volumeAnswer(*volume)
                      : ScriptResult::ofError(std::string(nameOf(kind)) + " tells no volume"));
    });
}

void MprisVolume::set(PlayerKind kind, int volume, const Answer& answer)
{
    const auto* player = playerToSet(kind);
    if (player == nullptr) {
        answer(notRunning(kind));
        return;
    }
    holds_[kind].set(player->owner, volume, std::chrono::steady_clock::now());
    bus_.setVolume(player->owner, volume / 100.0, [answer, kind](bool accepted) {
        answer(accepted ? ScriptResult{}
                        : ScriptResult::ofError(std::string(nameOf(kind)) + " accepts no volume"));
    });
}

void MprisVolume::takeSignal(const std::string& owner, const QVariantList& arguments)
{
    const auto now = std::chrono::steady_clock::now();
    for (auto& [kind, hold] : holds_) {
        if (!hold.isOpen(owner, now)) continue;
        const auto changed = decodeMap(arguments.value(1)).value_or(QVariantMap());
        const auto volume = decodeVolume(changed.value(QStringLiteral("Volume")));
        if (!volume) continue;
        if (const auto again = hold.hear(owner, *volume, now))
            bus_.setVolume(owner, *again / 100.0, [](bool) {});
    }
}

const Player* MprisVolume::playerToSet(PlayerKind kind) const
{
    const auto program = lastReadProgram(std::string(nameOf(kind)));
    return program ? directory_.findByName(*program) : directory_.chosen(kind);
}

std::optional<std::string> MprisVolume::lastReadProgram(const std::string& player) const
{
    const auto lastRead = lastRead_.load();
    if (!lastRead) return std::nullopt;
    const auto found = lastRead->find(player);
    return found == lastRead->end() ? std::nullopt : std::optional(found->second);
}

}  // namespace sonvara::players
