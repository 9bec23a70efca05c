#include "volume/VolumeKeeper.h"

#include "support/PlayerScripts.h"
#include "volume/NoteStore.h"
#include "volume/VolumePrograms.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace sonvara {
namespace {

/// Makes a volume that we have set ourselves the one that the user had chosen before.
void liftToUsers(ScriptResult& volume, const VolumeNote& note)
{
    if (!isAbout(volume.integer, note.ducked)) return;
    volume.integer = note.volume;
    if (volume.text) volume.text = std::to_string(note.volume);
}

}  // namespace

VolumeKeeper::VolumeKeeper(ScriptRunner& scripts, VolumePrograms& programs, NoteStore& store)
    : scripts_(scripts),
      programs_(programs),
      store_(store)
{
    const auto text = store_.load();
    if (!text) return;
    const auto notes = parseVolumeNotes(*text);
    if (!notes) {
        store_.setAside();
        return;
    }
    for (const auto& note : *notes) kept_[note.program] = {note, true, 0, ++changes_};
}

ScriptResult VolumeKeeper::run(const std::string& source)
{
    putBackAll(true);
    const auto command = parseVolumeScript(source);
    if (!command) return scripts_.run(source);
    return command->volume ? set(*command, source) : read(*command, source);
}

/// A player that we have lowered is still as loud as its user wants it: were the lowered volume taken for
/// the user's, a line that follows close on another one would lower it further and leave it there.
ScriptResult VolumeKeeper::read(const VolumeCommand& command, const std::string& source)
{
    const auto before = notes();  // it may be put back between the answer and our look at it
    auto result = scripts_.run(source);
    const auto program = programs_.programOf(command.player);
    if (!program || !result.created || result.error) return result;
    const std::lock_guard lock(mutex_);
    const auto known = kept_.find(*program);
    if (known != kept_.end()) liftToUsers(result, known->second.note);
    const auto old =
        std::ranges::find_if(before, [&](const VolumeNote& note) { return note.program == *program; });
    if (old != before.end()) liftToUsers(result, *old);
    lastRead_[*program] = result.integer;
    return result;
}

ScriptResult VolumeKeeper::set(const VolumeCommand& command, const std::string& source)
{
    const auto program = programs_.programOf(command.player);
    if (!program) return scripts_.run(source);
    if (!noteBefore(*program, *command.volume)) return ScriptResult::ofError("the program is ending");
    auto result = scripts_.run(source);
    settleAfter(*program, *command.volume, result.created && !result.error);
    return result;
}

/// Writes down that `program` is about to be set to `volume`; false when that must not happen any more.
bool VolumeKeeper::noteBefore(const std::string& program, int volume)
{
    const std::lock_guard lock(mutex_);
    const auto known = kept_.find(program);
    const bool isWayBack = known != kept_.end() && known->second.note.volume == volume;
    if (isClosing_ && !isWayBack) return false;
    if (!isWayBack) writeBefore(program, volume);
    const auto noted = kept_.find(program);
    if (noted != kept_.end()) ++noted->second.commandsUnderWay;
    return true;
}

void VolumeKeeper::writeBefore(const std::string& program, int volume)
{
    const auto known = kept_.find(program);
    const auto read = lastRead_.extract(program);  // a read counts for the one command that follows it
    if (known == kept_.end()) {
        if (read) write({program, read.mapped(), volume});
        return;
    }
    // Lowered again from where we put it, the volume to go back to is still the first one.
    const bool wasMoved = read && !isAbout(read.mapped(), known->second.note.ducked);
    write({program, wasMoved ? read.mapped() : known->second.note.volume, volume});
}

void VolumeKeeper::settleAfter(const std::string& program, int volume, bool succeeded)
{
    const std::lock_guard lock(mutex_);
    const auto known = kept_.find(program);
    if (known == kept_.end()) return;
    auto& kept = known->second;
    if (kept.commandsUnderWay > 0) --kept.commandsUnderWay;
    if (!succeeded) {
        kept.isLeftOver = true;  // it may or may not have happened
    } else if (kept.note.volume == volume && kept.commandsUnderWay == 0) {
        kept_.erase(known);
        save();
    }
}

void VolumeKeeper::restoreAll()
{
    {
        const std::lock_guard lock(mutex_);
        isClosing_ = true;
    }
    putBackAll(false);
}

void VolumeKeeper::putBackAll(bool onlyLeftOver)
{
    std::vector<Kept> all;
    {
        const std::lock_guard lock(mutex_);
        for (const auto& [program, kept] : kept_) {
            if (kept.isLeftOver || !onlyLeftOver) all.push_back(kept);
        }
    }
    for (const auto& kept : all) putBack(kept);
}

/// Undoes what the note says, if its program is there to be asked, and forgets it.
void VolumeKeeper::putBack(const Kept& kept)
{
    const auto& program = kept.note.program;
    const auto now = programs_.volume(program);
    if (!now) return;
    if (isAbout(*now, kept.note.ducked) && !programs_.setVolume(program, kept.note.volume)) return;
    const std::lock_guard lock(mutex_);
    const auto known = kept_.find(program);
    // A command that is under way may lower the player yet: then the note is for the next start.
    if (known == kept_.end() || known->second.change != kept.change || known->second.commandsUnderWay > 0)
        return;
    kept_.erase(known);
    save();
}

void VolumeKeeper::write(const VolumeNote& note)
{
    auto& kept = kept_[note.program];
    kept.note = note;
    kept.isLeftOver = false;
    kept.change = ++changes_;
    save();
}

void VolumeKeeper::save()
{
    if (kept_.empty())
        store_.remove();
    else
        store_.save(format(notesLocked()));
}

VolumeNotes VolumeKeeper::notes()
{
    const std::lock_guard lock(mutex_);
    return notesLocked();
}

VolumeNotes VolumeKeeper::notesLocked() const
{
    VolumeNotes notes;
    for (const auto& [program, kept] : kept_) notes.push_back(kept.note);
    return notes;
}

}  // namespace sonvara
