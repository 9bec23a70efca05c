#include "monitor/MusicMonitor.h"

#include "ports/Platform.h"
#include "ports/Queues.h"
#include "ports/ScriptRunner.h"
#include "support/PlayerScripts.h"

#include <chrono>
#include <utility>

namespace sonvara {

namespace {

constexpr std::chrono::seconds pollInterval{3};

template <typename T>
T valueOr(const UserInfo& info, const char* key, const T& fallback)
{
    const auto found = info.find(key);
    const auto* value = found != info.end() ? std::get_if<T>(&found->second) : nullptr;
    return value ? *value : fallback;
}

std::string string(const UserInfo& info, const char* key)
{
    return valueOr(info, key, std::string());
}

}  // namespace

std::shared_ptr<MusicMonitor> MusicMonitor::create(Platform& platform)
{
    std::shared_ptr<MusicMonitor> monitor(new MusicMonitor(platform));
    monitor->observePlayers();
    monitor->startMonitoring();
    monitor->logger_.debug({{"MusicMonitor initialized and monitoring started"}});
    return monitor;
}

MusicMonitor::MusicMonitor(Platform& platform)
    : platform_(platform),
      logger_(platform.systemLog, "MusicMonitor")
{}

void MusicMonitor::observePlayers()
{
    for (const auto* name : {musicNotification, spotifyNotification}) {
        auto changed = [weak = weak_from_this()](const Notification& notification) {
            if (const auto monitor = weak.lock()) monitor->playbackChanged(notification);
        };
        observers_.push_back(platform_.notificationCenter.addObserver(name, std::move(changed)));
    }
}

void MusicMonitor::startMonitoring()
{
    // The timer outlives the monitor, as run loops keep their timers; then its ticks do nothing.
    timer_ = platform_.mainQueue.scheduleTimer(pollInterval, [weak = weak_from_this()] {
        if (const auto monitor = weak.lock()) monitor->updateTrackInfo();
    });
    updateTrackInfo();
}

void MusicMonitor::updateTrackInfo()
{
    platform_.globalQueue.post(QualityOfService::utility,
                               [monitor = shared_from_this()] { monitor->poll(); });
}

void MusicMonitor::poll()
{
    const auto music = query(musicSource, musicPollScript(), poll::musicFields);
    const auto spotify = query(spotifySource, spotifyPollScript(), poll::spotifyFields);
    const auto last = lastEventTrack_.load();
    applyLater(pick(music, spotify, last ? std::optional(*last) : std::nullopt));
}

std::optional<NowPlaying> MusicMonitor::query(const std::string& player, const std::string& script,
                                              std::size_t fields) const
{
    const auto result = platform_.scriptRunner.run(script);
    if (!result.created) return std::nullopt;
    if (!result.text) {
        if (result.error) {
            logger_.error({Logger::hidden(player), {" AppleScript error: "}, Logger::hidden(*result.error)});
        }
        return std::nullopt;
    }
    if (*result.text == poll::notRunning || *result.text == poll::failed) return std::nullopt;
    auto record = parsePollOutput(player, *result.text, fields);
    if (!record) {
        logger_.error({{"Unexpected "}, Logger::hidden(player), {" output: "}, Logger::hidden(*result.text)});
    }
    return record;
}

void MusicMonitor::playbackChanged(const Notification& notification)
{
    if (auto record = parseEvent(notification)) {
        lastEventTrack_.store(*record);
        applyLater(std::move(record));
    }
    updateTrackInfo();
}

void MusicMonitor::applyLater(std::optional<NowPlaying> record)
{
    platform_.mainQueue.post(
        [monitor = shared_from_this(), record = std::move(record)] { monitor->apply(record); });
}

void MusicMonitor::apply(const std::optional<NowPlaying>& record)
{
    if (!record) {
        isPlaying.set(false);
        trackName.set({});
        artistName.set({});
        albumName.set({});
        isFavorited.set(false);
        source.set({});
        return;
    }
    artistName.set(record->artist);
    albumName.set(record->album);
    isPlaying.set(record->isPlaying);
    isFavorited.set(record->favorited);
    source.set(record->source);
    trackName.set(record->name);  // last: the announcement fires on it and then reads the others
    logger_.debug({{"Now playing via "},
                   Logger::hidden(record->source),
                   {": '"},
                   Logger::hidden(record->name),
                   {"' (playing="},
                   Logger::flag(record->isPlaying),
                   {")"}});
}

std::optional<NowPlaying> MusicMonitor::parseEvent(const Notification& notification)
{
    const auto info = notification.userInfo.value_or(UserInfo());
    NowPlaying record;
    record.source = notification.name == musicNotification ? musicSource : spotifySource;
    record.name = string(info, "Name");
    const auto state = string(info, "Player State");
    if (record.name.empty()) {
        if (state != "Stopped") return std::nullopt;
        return record;
    }
    record.artist = string(info, "Artist");
    record.album = string(info, "Album");
    record.isPlaying = state == "Playing";
    record.favorited = valueOr(info, "Loved", false);
    return record;
}

std::optional<NowPlaying> MusicMonitor::parsePollOutput(const std::string& source, const std::string& output,
                                                        std::size_t fields)
{
    auto track = poll::read(output, fields);
    if (!track) return std::nullopt;
    return NowPlaying{std::move(track->title), std::move(track->artist),       std::move(track->album),
                      track->isPlaying,        track->isLoved.value_or(false), source};
}

std::optional<NowPlaying> MusicMonitor::pick(const std::optional<NowPlaying>& music,
                                             const std::optional<NowPlaying>& spotify,
                                             const std::optional<NowPlaying>& fallback)
{
    if (music && music->isPlaying) return music;
    if (spotify && spotify->isPlaying) return spotify;
    if (music) return music;
    if (spotify) return spotify;
    return fallback;
}

}  // namespace sonvara
