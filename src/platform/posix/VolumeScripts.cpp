#include "platform/posix/VolumeScripts.h"

#include "ports/Queues.h"
#include "support/PlayerScripts.h"

#include <memory>
#include <utility>

namespace sonvara {

ScriptResult VolumeScripts::run(const std::string& source)
{
    const auto command = parseVolumeScript(source);
    if (!command) {
        auto result = others_.run(source);
        if (loweredPlayers_.owesAnything()) mainQueue_.post([this] { loweredPlayers_.polled(); });
        return result;
    }
    if (!command->volume) return read(command->player);
    set(*command);
    return {};
}

ScriptResult VolumeScripts::read(const std::string& player)
{
    const auto answer = std::make_shared<Answer>();
    mainQueue_.post([this, player, answer] {
        loweredPlayers_.read(player, [this, answer](const std::optional<LoweredPlayers::Reading>& reading) {
            {
                const std::lock_guard lock(mutex_);
                *answer = {true, reading};
            }
            changed_.notify_all();
        });
    });
    std::unique_lock lock(mutex_);
    const auto isDone = [&] { return answer->hasCome || isClosed_; };
    changed_.wait_for(lock, limit_, isDone);
    if (!answer->reading) return ScriptResult::ofError(player + " tells no volume");
    readings_[std::this_thread::get_id()] = *answer->reading;
    const int percent = answer->reading->percent();
    auto result = ScriptResult::ofText(std::to_string(percent));
    result.integer = percent;
    return result;
}

void VolumeScripts::set(const VolumeCommand& command)
{
    std::unique_lock lock(mutex_);
    const auto read = readings_.extract(std::this_thread::get_id());
    const auto reading = read ? std::optional(read.mapped()) : std::nullopt;
    lock.unlock();
    mainQueue_.post([this, command, reading] {
        if (reading)
            loweredPlayers_.duck(command.player, *reading, *command.volume);
        else
            loweredPlayers_.restore(command.player);
    });
}

void VolumeScripts::close()
{
    {
        const std::lock_guard lock(mutex_);
        isClosed_ = true;
    }
    changed_.notify_all();
}

}  // namespace sonvara
