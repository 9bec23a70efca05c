#include "platform/linux/players/PlayerDirectory.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace sonvara {

NameKind Player::kindOfNames() const
{
    auto kind = NameKind::ignored;
    for (const auto& name : names) kind = std::min(kind, kindOfName(name));
    return kind;
}

std::optional<PlayerKind> Player::kind() const
{
    const auto name = kindOfNames();
    if (name == NameKind::spotify) return PlayerKind::spotify;
    if (name == NameKind::ignored || isBrowser(name, introduction)) return std::nullopt;
    return PlayerKind::music;
}

bool Player::isKnown() const
{
    return unanswered == 0 && (!kind() || settler.hasSettled() || !settler.deadline());
}

Player* PlayerDirectory::add(const std::string& name, const std::string& owner)
{
    if (kindOfName(name) == NameKind::ignored) return nullptr;
    if (auto* known = find(owner)) {
        if (std::ranges::find(known->names, name) == known->names.end()) known->names.push_back(name);
        return nullptr;
    }
    auto& player = players_.emplace_back();
    player.serial = ++serials_;
    player.owner = owner;
    player.names.push_back(name);
    return &player;
}

void PlayerDirectory::remove(const std::string& name, const std::string& owner)
{
    auto* player = find(owner);
    if (player == nullptr) return;
    std::erase(player->names, name);
    if (player->names.empty()) players_.remove_if([player](const auto& each) { return &each == player; });
}

Player* PlayerDirectory::find(const std::string& owner)
{
    const auto found = std::ranges::find_if(players_, [&](const auto& each) { return each.owner == owner; });
    return found == players_.end() ? nullptr : &*found;
}

const Player* PlayerDirectory::find(const std::string& owner) const
{
    const auto found = std::ranges::find_if(players_, [&](const auto& each) { return each.owner == owner; });
    return found == players_.end() ? nullptr : &*found;
}

void PlayerDirectory::observe(Player& player, StateChange change, Time now)
{
    const auto before = player.settler.picture();
    merge(player.said, std::move(change));
    player.settler.observe(player.said, now);
    noteChange(player, before);
}

void PlayerDirectory::expire(Time now)
{
    for (auto& player : players_) {
        const auto due = player.settler.deadline();
        if (!due || *due > now) continue;
        const auto before = player.settler.picture();
        player.settler.expire(now);
        noteChange(player, before);
    }
}

std::optional<Time> PlayerDirectory::deadline() const
{
    std::optional<Time> next;
    for (const auto& player : players_) {
        const auto due = player.settler.deadline();
        if (due && (!next || *due < *next)) next = due;
    }
    return next;
}

const Player* PlayerDirectory::chosen(PlayerKind kind) const
{
    const auto rank = [](const Player& player) {
        const bool plays = player.settler.picture().status == PlaybackStatus::playing;
        return std::tuple(plays, player.changed);
    };
    const Player* best = nullptr;
    for (const auto& player : players_) {
        if (player.unanswered > 0 || player.kind() != kind || isSecondName(player)) continue;
        if (best == nullptr || rank(player) > rank(*best)) best = &player;
    }
    return best;
}

Picture PlayerDirectory::picture(PlayerKind kind) const
{
    const auto* player = chosen(kind);
    return player == nullptr ? Picture{} : player->settler.picture();
}

bool PlayerDirectory::isKnown(PlayerKind kind) const
{
    return std::ranges::all_of(players_, [kind](const auto& player) {
        const bool isSpotify = player.kindOfNames() == NameKind::spotify;
        return isSpotify != (kind == PlayerKind::spotify) || player.isKnown();
    });
}

// A program that shows itself on two connections is heard on one of them: the one whose name says
// most, else the earlier one.
bool PlayerDirectory::isSecondName(const Player& player) const
{
    if (!player.introduction.process) return false;
    bool earlier = true;
    for (const auto& other : players_) {
        if (&other == &player) {
            earlier = false;
            continue;
        }
        if (other.introduction.process != player.introduction.process) continue;
        if (other.unanswered > 0 || !other.kind()) continue;
        if (other.kindOfNames() < player.kindOfNames()) return true;
        if (earlier && other.kindOfNames() == player.kindOfNames()) return true;
    }
    return false;
}

void PlayerDirectory::noteChange(Player& player, const Picture& before)
{
    if (player.settler.picture() != before) player.changed = ++changes_;
}

}  // namespace sonvara
