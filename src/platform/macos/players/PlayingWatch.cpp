#include "platform/macos/players/PlayingWatch.h"

#include "support/PlayerScripts.h"

namespace sonvara {

ScriptResult PlayingWatch::run(const std::string& source)
{
    auto result = scripts_.run(source);
    const bool isMusic = source == musicPollScript();
    if (isMusic || source == spotifyPollScript()) {
        const auto track =
            poll::read(result.text.value_or(""), isMusic ? poll::musicFields : poll::spotifyFields);
        note(source, track && track->isPlaying);
    }
    return result;
}

void PlayingWatch::note(const std::string& poll, bool isPlaying)
{
    const std::lock_guard lock(mutex_);
    const bool wasAnyPlaying = !playing_.empty();
    if (isPlaying)
        playing_.insert(poll);
    else
        playing_.erase(poll);
    if (playing_.empty() == wasAnyPlaying) changed_(!playing_.empty());
}

}  // namespace sonvara
