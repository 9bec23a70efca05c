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
      players_(below.players,
               {[] { return steady_clock::now(); }, [this] { return today(); },
                [this](const LoweredNotes& notes) { writer_.write(notes.empty() ? "" : format(notes)); },
                [this](VolumeTime due) { wakeAt(due); }},
               load()),
      scripts_(below.otherScripts, below.mainQueue, players_, below.readLimit),
      voice_(below.voice, below.mainQueue, players_)
{}

void VolumeGuard::end()
{
    scripts_.close();
    voice_.close();
    players_.end();
}

int VolumeGuard::today() const
{
    return static_cast<int>(
        std::chrono::floor<std::chrono::days>(below_.clock.now().time_since_epoch()).count());
}

LoweredNotes VolumeGuard::load() const
{
    const auto text = below_.notes.load();
    if (!text) return {};
    auto notes = parseLoweredNotes(*text, today());
    if (notes) return *std::move(notes);
    below_.notes.setAside();
    return {};
}

void VolumeGuard::wakeAt(VolumeTime due)
{
    if (due == wakesAt_) return;
    wakesAt_ = due;
    if (wakeUp_) wakeUp_->cancel();
    const auto delay = std::chrono::ceil<std::chrono::milliseconds>(due - steady_clock::now());
    wakeUp_ = below_.workers.postAfter(QualityOfService::userInitiated, std::max(delay, {}),
                                       [this] { below_.mainQueue.post([this] { players_.wake(); }); });
}

}  // namespace sonvara
