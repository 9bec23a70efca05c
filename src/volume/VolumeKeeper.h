// Sees to it that a player that was lowered gets its volume back, whatever happens to us.
#pragma once

#include "ports/ScriptRunner.h"
#include "volume/VolumeNotes.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace sonvara {

class NoteStore;
class VolumePrograms;
struct VolumeCommand;

/// A script runner that passes every script on, unchanged, and writes down which players are lowered
/// before they are. What is still written down when the program ends, or was when the last one died, is
/// put right: unless somebody has moved the volume meanwhile by more than 2. Answers pass unchanged, too, but
/// for one: the volume of a player that is lowered is the one to which it goes back.
///
/// A note is open from before a player is lowered until its volume has been put back. It is left over
/// when that failed or the process that wrote it has ended; then it is tried again before each script
/// until the program is there.
class VolumeKeeper : public ScriptRunner {
public:
    /// Reads the notes of the process before. All references must outlive the keeper.
    VolumeKeeper(ScriptRunner& scripts, VolumePrograms& programs, NoteStore& store);

    [[nodiscard]] ScriptResult run(const std::string& source) override;

    /// The program ends: puts back every volume that it can, and lets no player be lowered any more.
    void restoreAll();

private:
    struct Kept {
        VolumeNote note;
        bool isLeftOver = false;
        int commandsUnderWay = 0;  ///< whose effect may not be seen yet
        std::uint64_t change = 0;  ///< which change of any note this is; tells equal notes apart
    };

    [[nodiscard]] ScriptResult read(const VolumeCommand& command, const std::string& source);
    [[nodiscard]] ScriptResult set(const VolumeCommand& command, const std::string& source);
    [[nodiscard]] bool noteBefore(const std::string& program, int volume);
    void writeBefore(const std::string& program, int volume);
    void settleAfter(const std::string& program, int volume, bool succeeded);
    void putBackAll(bool onlyLeftOver);
    void putBack(const Kept& kept);
    void write(const VolumeNote& note);
    void save();
    [[nodiscard]] VolumeNotes notes();
    [[nodiscard]] VolumeNotes notesLocked() const;

    ScriptRunner& scripts_;
    VolumePrograms& programs_;
    NoteStore& store_;
    std::mutex mutex_;                     ///< guards the rest; never held while a script runs
    std::map<std::string, Kept> kept_;     ///< by program
    std::map<std::string, int> lastRead_;  ///< by program; volumes that no command has used yet
    std::uint64_t changes_ = 0;
    bool isClosing_ = false;
};

}  // namespace sonvara
