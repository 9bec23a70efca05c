#include "platform/posix/VolumeGuard.h"

#include "ports/Queues.h"
#include "ports/System.h"
#include "volume/NoteStore.h"

#include <algorithm>

namespace sonvara {

using std::chrono::steady_clock;

VolumeGuard::VolumeGuard(const Below& below)
    : below_(below),
      writer_(below.notes),
      players_(std::make_shared<LoweredPlayers>(
          below.players,
          LoweredPlayers::Surroundings{
              .now = [] { return steady_clock::now(); },
              .today = [this] { return today(); },
              .keep = [this](const LoweredNotes& all) { writer_.write(all.empty() ? "" : format(all)); },
              .recall = [this] { recall(); },
              .wakeAt = [this](VolumeTime due) { wakeAt(due); }})),
      scripts_(below.otherScripts, below.mainQueue, *players_, below.readLimit),
      voice_(below.voice, below.mainQueue, *players_)
{}

void VolumeGuard::end()
{
    scripts_.close();
    voice_.close();
    players_->end();
}

int VolumeGuard::today() const
{
    return static_cast<int>(
        std::chrono::floor<std::chrono::days>(below_.clock.now().time_since_epoch()).count());
}

void VolumeGuard::recall()
{
    below_.workers.post(QualityOfService::userInitiated,
                        [below = below_, today = today(), weak = std::weak_ptr(players_)] {
                            const auto text = below.notes.load();
                            const auto notes = parseLoweredNotes(text.value_or(""), today);
                            if (text && !notes) below.notes.setAside();
                            below.mainQueue.post([weak, notes = notes.value_or(LoweredNotes())] {
                                if (const auto players = weak.lock()) players->remember(notes);
                            });
                        });
}

void VolumeGuard::wakeAt(VolumeTime due)
{
    if (due == wakesAt_) return;
    wakesAt_ = due;
    if (wakeUp_) wakeUp_->cancel();
    const auto delay = std::chrono::ceil<std::chrono::milliseconds>(due - steady_clock::now());
    wakeUp_ = below_.workers.postAfter(QualityOfService::userInitiated, std::max(delay, {}),
                                       [&mainQueue = below_.mainQueue, weak = std::weak_ptr(players_)] {
                                           mainQueue.post([weak] {
                                               if (const auto players = weak.lock()) players->wake();
                                           });
                                       });
}

}  // namespace sonvara
