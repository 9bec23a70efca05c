#include "fakes/FakePlayers.h"

#include "support/PlayerScripts.h"

namespace sonvara::test {

ScriptResult FakePlayers::run(const std::string& source)
{
    EXPECT_FALSE(time_.isMainThread()) << "scripts block, so they never run on the main thread";
    scripts.push_back(source);
    auto& slow = source.find("\"Spotify\"") != std::string::npos ? spotify : music;
    time_.sleepWorker(slow.latency);
    if (source == musicPollScript()) return poll(music, true);
    if (source == spotifyPollScript()) return poll(spotify, false);
    if (auto result = volumeCommand("Music", music, source)) return *result;
    if (auto result = volumeCommand("Spotify", spotify, source)) return *result;
    ADD_FAILURE() << "unknown script: " << source;
    return ScriptResult::ofError("unknown script");
}

Notification FakePlayers::notificationOf(const Player& player, const std::string& name)
{
    return {name, UserInfo{{"Player State", std::string(player.isPlaying ? "Playing" : "Paused")},
                           {"Name", player.title},
                           {"Artist", player.artist},
                           {"Album", player.album}}};
}

ScriptResult FakePlayers::poll(const Player& player, bool hasLoved)
{
    if (player.pollResult) return *player.pollResult;
    if (!player.isRunning) return ScriptResult::ofText(poll::notRunning);
    if (player.title.empty()) return ScriptResult::ofText(poll::failed);
    poll::Track track{player.title, player.artist, player.album, player.isPlaying, std::nullopt};
    if (hasLoved) track.isLoved = player.isLoved;
    return ScriptResult::ofText(poll::write(track));
}

std::optional<ScriptResult> FakePlayers::volumeCommand(const std::string& name, Player& player,
                                                       const std::string& source)
{
    const auto tell = "tell application \"" + name + "\" to ";
    if (source == tell + "get sound volume") {
        volumeCommands.push_back(name + "?");
        if (player.volumeReadResult) return player.volumeReadResult;
        auto result = ScriptResult::ofText(std::to_string(player.volume));
        result.integer = player.volume;
        return result;
    }
    const auto set = tell + "set sound volume to ";
    if (!source.starts_with(set)) return std::nullopt;
    const auto number = source.substr(set.size());
    volumeCommands.push_back(name + "=" + number);
    const int volume = std::stoi(number);
    EXPECT_EQ(number, std::to_string(volume)) << "no sign, no leading zeros";
    EXPECT_TRUE(volume >= 0 && volume <= 100) << "volumes are clamped: " << number;
    player.volume = volume;
    return ScriptResult{};
}

}  // namespace sonvara::test
