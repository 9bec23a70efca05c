#include "platform/linux/players/PlayerDirectory.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace sonvara {
namespace {

NameKind kindOfNames(const std::vector<std::string>& names)
{
    auto kind = NameKind::ignored;
    for (const auto& name : names) kind = std::min(kind, kindOfName(name));
    return kind;
}

}  // namespace

PlayerKind Player::kind() const
{
    return nameKind == NameKind::spotify ? PlayerKind::spotify : PlayerKind::music;
}

bool Player::counts() const
{
    return introduction && !isBrowser(nameKind, *introduction);
}

Player* PlayerDirectory::add(const std::string& name, const std::string& owner)
{
    if (kindOfName(name) == NameKind::ignored) return nullptr;
    auto* player = find(owner);
    const bool isNew = player == nullptr;
    if (isNew) {
        if (players_.size() >= maxPlayers) return nullptr;
        player = &players_.emplace_back();
        player->serial = ++serials_;
        player->owner = owner;
    }
    if (player->names.size() < maxNames && std::ranges::find(player->names, name) == player->names.end())
        player->names.push_back(name);
    player->nameKind = kindOfNames(player->names);
    return isNew ? player : nullptr;
}

void PlayerDirectory::remove(const std::string& name, const std::string& owner)
{
    auto* player = find(owner);
    if (player == nullptr) return;
    std::erase(player->names, name);
    player->nameKind = kindOfNames(player->names);
    if (player->names.empty()) players_.remove_if([player](const auto& each) { return &each == player; });
}

Player* PlayerDirectory::find(const std::string& owner)
{
    const auto found = std::ranges::find(players_, owner, &Player::owner);
    return found == players_.end() ? nullptr : &*found;
}

const Player* PlayerDirectory::find(const std::string& owner) const
{
    const auto found = std::ranges::find(players_, owner, &Player::owner);
    return found == players_.end() ? nullptr : &*found;
}

void PlayerDirectory::observe(Player& player, StateChange change, Time now)
{
    const auto before = player.debounce.snapshot();
    merge(player.said, std::move(change));
    player.debounce.observe(player.said, now);
    noteChange(player, before);
}

void PlayerDirectory::expire(Time now)
{
    for (auto& player : players_) {
        const auto before = player.debounce.snapshot();
        player.debounce.expire(now);
        noteChange(player, before);
    }
}

std::optional<Time> PlayerDirectory::deadline() const
{
    std::optional<Time> next;
    for (const auto& player : players_)
        if (const auto due = player.debounce.deadline()) next = std::min(*due, next.value_or(*due));
    return next;
}

const Player* PlayerDirectory::chosen(PlayerKind kind) const
{
    const auto rank = [](const Player& player) {
        const bool plays = player.debounce.snapshot().status == PlaybackStatus::playing;
        return std::tuple(player.isHeard, plays, player.changed);
    };
    const Player* best = nullptr;
    for (const auto& player : players_) {
        if (player.kind() != kind || !player.counts() || isSecondName(player)) continue;
        if (best == nullptr || rank(player) > rank(*best)) best = &player;
    }
    return best;
}

PlayerSnapshot PlayerDirectory::snapshot(PlayerKind kind) const
{
    const auto* player = chosen(kind);
    return player == nullptr ? PlayerSnapshot{} : player->debounce.snapshot();
}

// A program that shows itself on two connections is heard on one of them: the one whose name says
// most, else the earlier one.
bool PlayerDirectory::isSecondName(const Player& player) const
{
    if (!player.process) return false;
    bool earlier = true;
    for (const auto& other : players_) {
        if (&other == &player) {
            earlier = false;
            continue;
        }
        if (other.process != player.process || !other.counts()) continue;
        if (other.nameKind < player.nameKind || (earlier && other.nameKind == player.nameKind)) return true;
    }
    return false;
}

void PlayerDirectory::noteChange(Player& player, const PlayerSnapshot& before)
{
    if (player.debounce.snapshot() != before) player.changed = ++changes_;
}

}  // namespace sonvara
