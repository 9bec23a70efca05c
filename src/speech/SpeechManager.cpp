#include "speech/SpeechManager.h"

#include "ai/AIDJ.h"
#include "log/DJLog.h"
#include "ports/Platform.h"
#include "ports/Queues.h"
#include "ports/UserDefaults.h"
#include "speech/AnnouncementPolicy.h"
#include "speech/DJStyle.h"
#include "support/Text.h"

#include <utility>

namespace sonvara {

namespace {
constexpr double speechRate = 0.5;
}

std::shared_ptr<SpeechManager> SpeechManager::create(Platform& platform)
{
    std::shared_ptr<SpeechManager> manager(new SpeechManager(platform));
    manager->synthesizer_.setDelegate(manager);
    return manager;
}

SpeechManager::SpeechManager(Platform& platform)
    : platform_(platform),
      synthesizer_(platform.speechSynthesizer),
      defaults_(platform.userDefaults),
      aiDJ_(AIDJ::create(platform)),
      logger_(platform.systemLog, "Speech")
{}

bool SpeechManager::announcementsEnabled() const
{
    return read(defaults_, settings::announcementsEnabled);
}

bool SpeechManager::duckMusic() const
{
    return read(defaults_, settings::duckMusic);
}

bool SpeechManager::aiIntros() const
{
    return read(defaults_, settings::aiIntros);
}

void SpeechManager::stopNow()
{
    generation_.advance();
    synthesizer_.stopSpeaking();
}

void SpeechManager::speak(const std::string& track, const std::string& artist, const std::string& album,
                          bool favorited, const std::string& source)
{
    const bool announce =
        AnnouncementPolicy::shouldAnnounce(track, artist, album, lastSpokenTrack_, lastArtist_, lastAlbum_);
    const bool isNew = !track.empty() && !text::equal(track, lastSpokenTrack_);
    if (isNew) {
        lastSpokenTrack_ = track;
        lastArtist_ = artist;
        lastAlbum_ = album;
        stopNow();
    }
    if (!announcementsEnabled()) return;
    if (!announce) {
        if (isNew) logger_.debug({{"Skipping announcement — same album playthrough."}});
        return;
    }
    const Announcement announcement{track, artist, album, favorited, source, generation_.value()};
    auto offlineLine = DJ::offlineIntro(track, artist, album, favorited);
    if (aiIntros() && aiDJ_->isAvailable()) {
        speakAIIntro(announcement, std::move(offlineLine));
    } else {
        utter(offlineLine, source, announcement.generation);
    }
}

void SpeechManager::speakAIIntro(const Announcement& announcement, std::string fallback)
{
    auto& mainQueue = platform_.mainQueue;
    mainQueue.post([weak = weak_from_this(), announcement, fallback = std::move(fallback), &mainQueue] {
        const auto manager = weak.lock();
        if (!manager) return;
        // From here on only the AI component is held, so that a slow tool does not keep the manager alive.
        auto utterLater = [weak, announcement, fallback, &mainQueue](const std::optional<std::string>& line) {
            mainQueue.post([weak, announcement, line = line.value_or(fallback)] {
                const auto alive = weak.lock();
                if (alive) alive->utter(line, announcement.source, announcement.generation);
            });
        };
        manager->aiDJ_->intro(announcement.track, announcement.artist, announcement.album,
                              announcement.favorited, std::move(utterLater));
    });
}

void SpeechManager::utter(const std::string& line, const std::string& source, std::int64_t generation)
{
    if (generation != generation_.value()) {
        logger_.debug({{"Suppressed announcement — superseded by a newer track or a stop."}});
        return;
    }
    logger_.debug({{"Announcing: "}, {line}});
    DJLog::shared().recordSpoken(line);
    if (duckMusic() && !source.empty()) duck(source);
    synthesizer_.speak({line, synthesizer_.voiceForLanguage(synthesizer_.currentLanguageCode()), speechRate});
}

void SpeechManager::didFinish()
{
    restoreVolumeLater();
}

void SpeechManager::didCancel()
{
    restoreVolumeLater();
}

void SpeechManager::restoreVolumeLater()
{
    platform_.mainQueue.post([weak = weak_from_this()] {
        if (const auto manager = weak.lock()) manager->restoreVolume();
    });
}

}  // namespace sonvara
