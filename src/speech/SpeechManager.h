// Turns reported tracks into spoken announcements.
#pragma once

#include "ports/SpeechSynthesizer.h"
#include "ports/SystemLog.h"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <string>

namespace sonvara {

class AIDJ;
struct Platform;
class ScriptRunner;
class UserDefaults;

/// Grows by one at each new track and each stop. A request notes the value when it is made; it is
/// stale as soon as the counter has moved on.
class Generation {
public:
    explicit Generation(std::int64_t start = 0) : value_(start) {}

    [[nodiscard]] std::int64_t value() const { return value_; }

    /// Moves on by one. Running over would make old requests look current, so it ends the process.
    void advance()
    {
        if (value_ == std::numeric_limits<std::int64_t>::max()) std::abort();
        ++value_;
    }

private:
    std::int64_t value_;
};

/// Decides on each reported track, composes the line, lowers the player and hands the line to the
/// synthesizer. A line for an older track, or from before a stop, is never spoken. Main thread.
class SpeechManager final : public SpeechSynthesizerDelegate,
                            public std::enable_shared_from_this<SpeechManager> {
public:
    /// Makes a manager and sets it as the synthesizer's delegate.
    [[nodiscard]] static std::shared_ptr<SpeechManager> create(Platform& platform);

    /// A player plays this track: to be called for every report, repeats included. `source` is the
    /// player's name; empty means a player whose volume cannot be changed.
    void speak(const std::string& track, const std::string& artist, const std::string& album, bool favorited,
               const std::string& source);

    /// Ends any announcement at once and makes those still being composed stale.
    void stopNow();

    /// Worker threads, blocking: a player's own volume, 0 (silent) to 100, or nothing when it cannot be read.
    [[nodiscard]] static std::optional<int> playerVolume(ScriptRunner& scripts, const std::string& source);
    /// Worker threads, blocking: sets the volume, clamped to 0 to 100. A failure is not reported.
    static void setPlayerVolume(ScriptRunner& scripts, const std::string& source, int volume);

    /// Any thread: an utterance has ended; the player's volume is restored soon on the main thread.
    void didFinish() override;
    void didCancel() override;

private:
    struct Announcement {
        std::string track;
        std::string artist;
        std::string album;
        bool favorited = false;
        std::string source;
        std::int64_t generation = 0;
    };

    explicit SpeechManager(Platform& platform);
    // The settings, read afresh at each use.
    [[nodiscard]] bool announcementsEnabled() const;
    [[nodiscard]] bool duckMusic() const;
    [[nodiscard]] bool aiIntros() const;
    /// `fallback` is spoken when the tool has no line.
    void speakAIIntro(const Announcement& announcement, std::string fallback);
    void utter(const std::string& line, const std::string& source, std::int64_t generation);
    /// Lowers the player to 35 % of its volume, but not below 12, for the time of a line.
    void duck(const std::string& source);
    void restoreVolume();
    void restoreVolumeLater();

    Platform& platform_;
    SpeechSynthesizer& synthesizer_;
    UserDefaults& defaults_;
    std::shared_ptr<AIDJ> aiDJ_;
    Logger logger_;
    std::string lastSpokenTrack_;  ///< the last new track reported, announced or not
    std::string lastArtist_;
    std::string lastAlbum_;
    std::optional<std::string> duckedSource_;  ///< the player that is lowered
    std::optional<int> preDuckVolume_;         ///< its volume before
    Generation generation_;
};

}  // namespace sonvara
