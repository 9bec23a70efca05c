// One player whose volume is lowered while the DJ speaks: what it is told, and when it is left in peace.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace sonvara {

using VolumeTime = std::chrono::steady_clock::time_point;

/// What a player told of itself in one answer.
struct VolumeLook {
    bool isPlaying = false;
    double volume = 0;                      ///< on the player's own scale; 1 is full
    std::string track;                      ///< another text for another track
    std::chrono::milliseconds position{0};  ///< how far it has come in its track; 0 also if it does not say
};

/// Nearer to each other than this, two volumes are the same: VLC tells 0.300003 for 0.3.
inline constexpr double sameWithin = 0.001;

/// The two volumes between which a player moves.
struct VolumeLevels {
    double home = 0;  ///< what its user chose: the very number that the player told
    double low = 0;   ///< while the DJ speaks

    friend bool operator==(const VolumeLevels&, const VolumeLevels&) = default;
};

/// Pure: events and the time come in, what is to be done is read off. The states:
///
///   free     nothing is owed to the player, and it is told nothing.
///   lowered  it was told `low`.
///   owed     it was told `home`, or is to be, and has not been seen there for certain.
///
// clang-format off
/// | state   | event                                | what follows
/// |---------|--------------------------------------|--------------------------------------------------------
/// | free    | lower                                | tell low: lowered
/// | lowered | no longer wanted low                 | tell home: owed
/// | owed    | wanted low, or lower                 | tell low: lowered; home stays, so that nothing adds up
/// | lowered | seen about low                       | it has obeyed
/// | lowered | seen at home, has not obeyed yet     | tell low again, up to three times: Parole and Pragha
/// |         |                                      | swallow a command in the first 30 ms of a stream
/// | lowered | seen at home, had obeyed, a track or | tell low once more for this track: Strawberry takes its
/// |         | stream has just begun                | volume back when it opens a stream
/// | lowered | seen at home, had obeyed             | the user's hand: owed; free at once, if that is for certain
/// | lowered | seen silent                          | the user's hand: owed, for it may come back low; told nothing
/// | lowered | seen anywhere else                   | the user's hand: free
/// | owed    | seen at home, for certain            | free
/// | owed    | seen a hundredth below home          | tell home, and a little: players cut off
/// |         |                                      | `int(v * 100)`
/// | owed    | seen at home, and its stream has     | tell home once more, past a neighbour, as soon as it plays
/// |         | opened since it was told             | and for certain: Elisa tells home, and sounds low, and
/// |         |                                      | ignores what it believes to be at
/// | owed    | seen about low                       | tell home again
/// | owed    | seen at full, far into its track,    | in doubt: look again; nothing is settled, nothing is read
/// |         | which has not gone on since          |
/// | owed    | seen silent                          | the user's hand: told nothing and not read until it is heard
/// | owed    | seen anywhere else                   | the user's hand: free
/// | lowered | falls silent, a track or stream has  | tell it again: Strawberry says so of a stream that it opens
/// | or owed | just begun: no hand is so quick      | on PipeWire, until it is told, and has another volume
/// | free    | there is a note of it from before    | owed; it is told nothing before it is seen
// clang-format on
///
/// A player without an open stream tells and accepts anything. So a hand is seen, and a note is settled, only
/// while it plays; "for certain" is: home was told while it played, and it has played for `opening` by now,
/// as streams open at the volume of the last one (Elisa and Pragha say 100 before they do), are silent at
/// first (VLC 0.1 s, Celluloid, cmus 2 s), or stand at the cube of what was told (Rhythmbox); and its track
/// has gone on for `beginning`, as Strawberry would take back the way home, too. One that is far into its
/// track when it is first seen has opened its stream long ago: where it is now, its user has put it. (A full
/// volume counts when it has gone on from there: Elisa begins where it was, and stays until its stream is
/// open. Until then nobody knows its user's volume.) And a player does not obey at once: elsewhere than told
/// it is judged after `settling` only, when it is looked at again.
class LoweredPlayer {
public:
    /// Until then a player that plays may tell of its last stream, or of none.
    static constexpr std::chrono::milliseconds opening{3000};
    /// How long a stream may take to open; sooner no user reacts to a track.
    static constexpr std::chrono::milliseconds connecting{300};
    /// How long a command may take to be seen.
    static constexpr std::chrono::milliseconds settling{100};
    /// How long after a track's begin a player may take its volume back by itself.
    static constexpr std::chrono::milliseconds beginning{2000};

    [[nodiscard]] bool isFree() const { return state_ == State::free; }
    [[nodiscard]] bool isLowered() const { return state_ == State::lowered; }
    /// The volumes, as long as it is not free.
    [[nodiscard]] std::optional<VolumeLevels> levels() const;
    /// Whether `volume` may be the silence before its stream is open, and not its user's choice.
    [[nodiscard]] bool isSilence(double volume, VolumeTime now) const;
    /// Whether it may be that, or the full volume that some tell until then.
    [[nodiscard]] bool isOpening(double volume, VolumeTime now) const;

    /// Whether it is too early to believe `look`: before its first stream is open a player may say that it is at
    /// full volume (Strawberry, 0.2 s).
    [[nodiscard]] bool mayMislead(const VolumeLook& look, VolumeTime now) const;
    /// Whether nobody knows its user's volume: it is owed one, and `look` is its user's hand, or a stream that is
    /// not open yet.
    [[nodiscard]] bool isDoubtful(const VolumeLook& look, VolumeTime now) const;

    /// Whether its user's volume is known now, from `look` or from what is owed to it.
    [[nodiscard]] bool isReadable(const VolumeLook& look, VolumeTime now) const;

    /// There is a note of it: its volume is owed to it from before.
    void owe(const VolumeLevels& levels)
    {
        state_ = State::owed;
        levels_ = levels;
    }
    /// Lowers the player. `levels` count if nothing is owed to it.
    void lower(const VolumeLevels& levels, VolumeTime now);
    /// Says whether the player, unless it is free, is to be low.
    void want(bool low, VolumeTime now);
    /// It has told something of itself without being asked. Absent: not that.
    void hear(std::optional<bool> isPlaying, const std::optional<std::string>& track, VolumeTime now);
    /// It was asked after the last command. Decides; signals do not, for they may be late.
    void see(const VolumeLook& look, VolumeTime now);

    /// What the player is to be told now, one after the other; yields each once.
    [[nodiscard]] std::optional<double> takeCommand();
    /// When it is to be looked at, if at all; the look has begun.
    [[nodiscard]] std::optional<VolumeTime> nextLook() const { return nextLook_; }
    void looksNow() { nextLook_.reset(); }

private:
    enum class State { free, lowered, owed };

    [[nodiscard]] bool isReady(VolumeTime now) const { return isPlaying_ && now >= playsSince_ + opening; }
    [[nodiscard]] bool mayBeNew(VolumeTime now) const { return !isReady(now) && !hasComeFar_; }
    [[nodiscard]] bool isCertain(VolumeTime now) const
    {
        return isReady(now) && now >= trackSince_ + beginning;
    }
    [[nodiscard]] bool hasSettled(VolumeTime now) const { return now >= told_ + settling; }
    [[nodiscard]] bool hasComeFar(const VolumeLook& look) const
    {
        return look.isPlaying && look.position >= opening && !sawItBegin_;
    }
    [[nodiscard]] bool hasFallenSilent(VolumeTime now) const;
    [[nodiscard]] bool isAtHome(double volume) const;
    [[nodiscard]] bool isAboutLow(double volume) const;
    [[nodiscard]] bool isCube(double volume, VolumeTime now) const;
    void beginTrack(VolumeTime now);
    void judgeLowered(double volume, VolumeTime now);
    void judgeHome(double volume, VolumeTime now);
    void judgeOwed(double volume, VolumeTime now);
    void planLook(VolumeTime now);
    void tell(double volume, VolumeTime now);
    void repeat(double volume, VolumeTime now);

    State state_ = State::free;
    VolumeLevels levels_;

    std::optional<double> command_;
    std::optional<double> detour_;  ///< to be told before that
    std::optional<VolumeTime> nextLook_;
    VolumeTime told_{};           ///< when it was last told anything; if it was
    VolumeTime toldElsewhere_{};  ///< when it was last told anything but home; it may do that yet
    bool toldWhilePlaying_ = false;
    bool toldWhileReady_ = false;
    int repeats_ = 0;            ///< of the last command
    bool hasObeyed_ = false;     ///< has been seen about low since it was told
    bool hasHeldTrack_ = false;  ///< was told low once more because of this track

    bool isSilent_ = false;     ///< when it was last seen
    bool beganSilent_ = false;  ///< its track: as its user wants it

    bool isPlaying_ = false;
    bool hasOpened_ = false;    ///< has been ready before
    bool sawItBegin_ = false;   ///< to play: so `playsSince_` is the truth
    bool hasComeFar_ = false;   ///< in its track, when it was first seen: its stream has been open for long
    bool goesOn_ = false;       ///< in its track since it was first seen
    bool wasDoubtful_ = false;  ///< when it was last seen
    std::optional<std::chrono::milliseconds> firstPosition_;  ///< when it was first seen
    VolumeTime playsSince_{};
    std::string track_;
    VolumeTime trackSince_{};
};

}  // namespace sonvara
