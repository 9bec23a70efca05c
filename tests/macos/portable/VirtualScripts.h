// The script component of a Mac and what stands between it and the core, in virtual time.
#pragma once

#include "fakes/FakeDesktop.h"
#include "platform/macos/players/ScriptComponent.h"
#include "platform/macos/players/ScriptLanes.h"
#include "support/PlayerScripts.h"
#include "volume/LoweredPlayers.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace sonvara::test {

using namespace std::chrono_literals;

/// Lets one script through at a time. While the user is being asked about a player, whoever waits for their consent
/// waits, and a script to that player would keep the component.
class VirtualComponent final : public ScriptComponent {
public:
    explicit VirtualComponent(FakeDesktop& desktop) : desktop_(desktop) {}

    [[nodiscard]] bool isInstalled(const std::string& player) override { return player != missing; }
    void awaitConsent(const std::string& player) override { waitWhileAsked(player); }
    [[nodiscard]] ScriptResult execute(const std::string& source) override
    {
        desktop_.time.blockWorker([this] { return !isBusy_; }, 24h);
        isBusy_ = true;
        ++executed;
        const bool isMusics = source.find("\"Music\"") != std::string::npos;
        waitWhileAsked(isMusics ? musicSource : spotifySource);
        auto& player = isMusics ? desktop_.players.music : desktop_.players.spotify;
        auto result = answer(source, player);
        isBusy_ = false;
        return result;
    }

    std::string asked;    ///< the player about which the user is being asked
    std::string missing;  ///< a player that is not on this Mac
    int executed = 0;

private:
    void waitWhileAsked(const std::string& player)
    {
        desktop_.time.blockWorker([this, player] { return asked != player; }, 24h);
    }
    ScriptResult answer(const std::string& source, const FakePlayers::Player& player)
    {
        if (source.starts_with("if application")) return look(player);
        if (source.find(" favorited of ") != std::string::npos)
            return ScriptResult::ofText("error");  // an old Music
        return desktop_.players.run(source);
    }
    static ScriptResult look(const FakePlayers::Player& player)
    {
        if (!player.isRunning) return {};
        return ScriptResult::ofText(std::to_string(player.volume) +
                                    (player.isPlaying ? "||true||" : "||false||") + player.title);
    }

    FakeDesktop& desktop_;
    bool isBusy_ = false;
};

/// What waits for answers in place of the core's workers: polls by `ScriptLanes::run`, volumes by `VolumeScripts`.
class VirtualScripts final : public ScriptRunner {
public:
    static constexpr auto readLimit = 2500ms;

    VirtualScripts(VirtualTime& time, ScriptLanes& lanes, LoweredPlayers& loweredPlayers)
        : time_(time),
          lanes_(lanes),
          loweredPlayers_(loweredPlayers)
    {}

    [[nodiscard]] ScriptResult run(const std::string& source) override
    {
        const auto command = parseVolumeScript(source);
        if (!command) return poll(source);
        return command->volume ? set(*command) : read(command->player);
    }

private:
    ScriptResult poll(const std::string& source)
    {
        const auto answer = std::make_shared<std::optional<ScriptResult>>();
        lanes_.poll(source, [answer](const ScriptResult& result) { *answer = result; });
        time_.blockWorker([answer] { return answer->has_value(); }, ScriptLanes::pollLimit);
        if (loweredPlayers_.owesAnything()) time_.post([this] { loweredPlayers_.polled(); });
        return answer->value_or(ScriptResult::ofText(poll::failed));
    }
    ScriptResult read(const std::string& player)
    {
        using Answer = std::optional<std::optional<LoweredPlayers::Reading>>;
        const auto answer = std::make_shared<Answer>();
        time_.post([this, player, answer] {
            loweredPlayers_.read(player, [answer](const auto& reading) { *answer = reading; });
        });
        time_.blockWorker([answer] { return answer->has_value(); }, readLimit);
        const auto reading = answer->value_or(std::nullopt);
        if (!reading) return ScriptResult::ofError("no volume");
        readings_[std::this_thread::get_id()] = *reading;
        auto result = ScriptResult::ofText(std::to_string(reading->percent()));
        result.integer = reading->percent();
        return result;
    }
    ScriptResult set(const VolumeCommand& command)
    {
        const auto read = readings_.extract(std::this_thread::get_id());
        const auto reading = read ? std::optional(read.mapped()) : std::nullopt;
        time_.post([this, command, reading] {
            if (reading)
                loweredPlayers_.duck(command.player, *reading, *command.volume);
            else
                loweredPlayers_.restore(command.player);
        });
        return {};
    }

    VirtualTime& time_;
    ScriptLanes& lanes_;
    LoweredPlayers& loweredPlayers_;
    std::map<std::thread::id, LoweredPlayers::Reading> readings_;
};

}  // namespace sonvara::test
