#include "platform/linux/players/PlayerVolume.h"

#include "platform/linux/players/MprisDecoder.h"

namespace sonvara::players {
namespace {

ScriptResult notRunning(PlayerKind kind)
{
    return errorAnswer(std::string(nameOf(kind)) + " is not running");
}

}  // namespace

void PlayerVolume::read(PlayerKind kind, const Answer& answer)
{
    const auto* player = directory_.chosen(kind);
    if (player == nullptr) {
        answer(notRunning(kind));
        return;
    }
    lastRead_[kind] = player->names.front();
    bus_.askVolume(player->owner, [answer, kind](const QVariantList& arguments) {
        const auto volume = decodeVolume(arguments.value(0));
        answer(volume ? volumeAnswer(*volume) : errorAnswer(std::string(nameOf(kind)) + " tells no volume"));
    });
}

void PlayerVolume::set(PlayerKind kind, int volume, const Answer& answer)
{
    const auto* player = playerToSet(kind);
    if (player == nullptr) {
        answer(notRunning(kind));
        return;
    }
    bus_.setVolume(player->owner, volume / 100.0, [answer, kind](bool accepted) {
        answer(accepted ? ScriptResult{} : errorAnswer(std::string(nameOf(kind)) + " accepts no volume"));
    });
}

const Player* PlayerVolume::playerToSet(PlayerKind kind) const
{
    const auto last = lastRead_.find(kind);
    return last == lastRead_.end() ? directory_.chosen(kind) : directory_.findByName(last->second);
}

}  // namespace sonvara::players
