// The programs on the bus that say that they are players, and which of them the system means by
// "Music" and by "Spotify".
#pragma once

#include "platform/linux/players/PlayerIdentity.h"
#include "platform/linux/players/Settler.h"

#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <vector>

namespace sonvara {

/// One connection to the bus that owns at least one player's name.
struct Player {
    std::uint64_t serial = 0;        ///< differs for a connection that leaves and comes back
    std::string owner;               ///< the connection's unique name
    std::vector<std::string> names;  ///< in order of appearance; never empty
    Introduction introduction;
    int unanswered = 0;        ///< first questions to it that are still open; until then it is not chosen
    bool tellsTracks = false;  ///< has told of a new track without being asked
    Time answered{};           ///< when it last told its whole state
    PlayerState said;
    Settler settler;
    std::uint64_t changed = 0;  ///< greater for a later change of its picture; 0 for none yet

    [[nodiscard]] NameKind kindOfNames() const;
    /// What the player counts as; absent if it does not count. May change while questions are open.
    [[nodiscard]] std::optional<PlayerKind> kind() const;
    /// Whether enough is known of the player to choose it or to pass it over.
    [[nodiscard]] bool isKnown() const;
};

/// The picture of all players. Values only: the caller brings in names, answers and time.
class PlayerDirectory {
public:
    /// `owner` has come to own `name`. Returns the player if it is a new one that can count; the
    /// caller then asks for its introduction and state. Names that never count are not kept.
    Player* add(const std::string& name, const std::string& owner);
    /// `owner` has lost `name`, and with its last name the player is gone.
    void remove(const std::string& name, const std::string& owner);
    void clear() { players_.clear(); }

    /// The player of the connection `owner`; null if it is none.
    [[nodiscard]] Player* find(const std::string& owner);
    [[nodiscard]] const Player* find(const std::string& owner) const;

    /// Takes in a message of `player`.
    void observe(Player& player, StateChange change, Time now);
    /// Accepts everything that has waited long enough.
    void expire(Time now);
    /// When `expire` should be called next, if anything waits.
    [[nodiscard]] std::optional<Time> deadline() const;

    /// The player that is meant by `kind`: the one that plays, and of several, or when none plays,
    /// the one that changed last. Null if there is none.
    [[nodiscard]] const Player* chosen(PlayerKind kind) const;
    /// What the system is told of `kind`; `Picture{}` without a player.
    [[nodiscard]] Picture picture(PlayerKind kind) const;
    /// Whether everyone who may be meant by `kind` is known.
    [[nodiscard]] bool isKnown(PlayerKind kind) const;

private:
    [[nodiscard]] bool isSecondName(const Player& player) const;
    void noteChange(Player& player, const Picture& before);

    std::list<Player> players_;  // in order of appearance, at stable addresses
    std::uint64_t changes_ = 0;
    std::uint64_t serials_ = 0;
};

}  // namespace sonvara
