#include "platform/macos/players/PlayerLane.h"

#include <algorithm>
#include <utility>

namespace sonvara {

void PlayerLane::command(std::string source, Done done)
{
    {
        const std::lock_guard lock(mutex_);
        commands_.push_back({std::move(source), {std::move(done)}});
    }
    startNext();
}

void PlayerLane::poll(std::string source, Done done)
{
    {
        const std::lock_guard lock(mutex_);
        const auto waiting = std::ranges::find(polls_, source, &Script::source);
        if (waiting == polls_.end())
            polls_.push_back({std::move(source), {std::move(done)}});
        else
            waiting->done.push_back(std::move(done));
    }
    startNext();
}

void PlayerLane::startNext()
{
    std::unique_lock lock(mutex_);
    auto& queue = commands_.empty() ? polls_ : commands_;
    if (isBusy_ || queue.empty()) return;
    isBusy_ = true;
    auto script = std::move(queue.front());
    queue.pop_front();
    lock.unlock();
    const auto source = script.source;
    run_(source, [this, script = std::move(script)](const ScriptResult& result) { ended(script, result); });
}

void PlayerLane::ended(const Script& script, const ScriptResult& result)
{
    for (const auto& done : script.done) done(result);
    {
        const std::lock_guard lock(mutex_);
        isBusy_ = false;
    }
    startNext();
}

}  // namespace sonvara
