// The programs on the bus that say that they are players, and which of them the system means by
// "Music" and by "Spotify".
#pragma once

#include "platform/linux/players/Debounce.h"
#include "platform/linux/players/PlayerIdentity.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <vector>

namespace sonvara {

/// One connection to the bus that owns at least one player's name.
struct Player {
    std::uint64_t serial = 0;               ///< differs for a connection that leaves and comes back
    std::string owner;                      ///< the connection's unique name
    std::vector<std::string> names;         ///< in order of appearance; never empty
    NameKind nameKind = NameKind::ignored;  ///< what the names say
    std::optional<std::uint32_t> process;
    std::optional<Introduction> introduction;  ///< absent until it has answered
    bool isAsked = false;                      ///< a question to it is under way
    bool isOvertaken = false;                  ///< it has signalled its state meanwhile
    bool isHeard = false;  ///< it has told its state since the last question that it left without an answer
    PlayerState said;
    Debounce debounce;
    std::uint64_t changed = 0;  ///< greater for a later change of its snapshot; 0 for none yet

    [[nodiscard]] PlayerKind kind() const;
    /// Whether it has said who it is.
    [[nodiscard]] bool isIntroduced() const { return introduction && !introduction->isEmpty(); }
    /// Whether it is a music player, by its own words, or by its name if it has answered without any.
    [[nodiscard]] bool counts() const;
};

/// What is known of all players. Values only: the caller brings in names, answers and time.
class PlayerDirectory {
public:
    /// Far more than anybody has. What a program claims beyond them is not kept, so that none can make the
    /// others wait.
    static constexpr std::size_t maxNames = 8;  ///< of one connection
    static constexpr std::size_t maxPlayers = 100;

    /// `owner` has come to own `name`. Returns the player if it is a new one that can count; the
    /// caller then asks it. Names that never count are not kept.
    Player* add(const std::string& name, const std::string& owner);
    /// `owner` has lost `name`, and with its last name the player is gone.
    void remove(const std::string& name, const std::string& owner);
    void clear() { players_.clear(); }

    /// The player of the connection `owner`; null if it is none.
    [[nodiscard]] Player* find(const std::string& owner);
    [[nodiscard]] const Player* find(const std::string& owner) const;
    /// In order of appearance, at stable addresses.
    [[nodiscard]] std::list<Player>& players() { return players_; }

    /// Takes in a message of `player`.
    void observe(Player& player, StateChange change, Time now);
    /// Accepts everything that has been held back for long enough.
    void expire(Time now);
    /// When `expire` is due next, if anything is held back.
    [[nodiscard]] std::optional<Time> deadline() const;

    /// The player that is meant by `kind`. One that answers comes before one that does not, then one that
    /// plays before one that does not, then the one that changed last. Null if there is none.
    [[nodiscard]] const Player* chosen(PlayerKind kind) const;
    /// What the system is told of `kind`; `PlayerSnapshot{}` without a player.
    [[nodiscard]] PlayerSnapshot snapshot(PlayerKind kind) const;

private:
    [[nodiscard]] bool isSecondName(const Player& player) const;
    void noteChange(Player& player, const PlayerSnapshot& before);

    std::list<Player> players_;
    std::uint64_t changes_ = 0;
    std::uint64_t serials_ = 0;
};

}  // namespace sonvara
