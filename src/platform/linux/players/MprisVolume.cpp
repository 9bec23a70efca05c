#include "platform/linux/players/MprisVolume.h"

#include "platform/linux/players/MprisDecoder.h"

#include <utility>

namespace sonvara::players {
namespace {

ScriptResult notRunning(PlayerKind kind)
{
    return ScriptResult::ofError(std::string(nameOf(kind)) + " is not running");
}

}  // namespace

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
    bus_.askVolume(player->owner, [answer, kind](const QVariantList& arguments) {
        const auto volume = decodeVolume(arguments.value(0));
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
    bus_.setVolume(player->owner, volume / 100.0, [answer, kind](bool accepted) {
        answer(accepted ? ScriptResult{}
                        : ScriptResult::ofError(std::string(nameOf(kind)) + " accepts no volume"));
    });
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
