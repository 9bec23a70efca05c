#include "platform/macos/players/ScriptLanes.h"

#include "platform/macos/players/ScriptComponent.h"
#include "support/PlayerScripts.h"

#include <future>
#include <memory>
#include <string_view>
#include <utility>

namespace sonvara {

namespace {

ScriptResult noScript()
{
    return {.created = false, .error = {}, .text = {}, .integer = 0};
}

/// The application that a script names; empty for none.
std::string_view playerIn(std::string_view source)
{
    constexpr std::string_view before = "application \"";
    const auto place = source.find(before);
    if (place == std::string_view::npos) return {};
    source.remove_prefix(place + before.size());
    return source.substr(0, source.find('"'));
}

}  // namespace

ScriptLanes::ScriptLanes(ScriptComponent& component,
                         const std::function<Post(const std::string& player)>& makeThread)
    : component_(component)
{
    for (const std::string player : {musicSource, spotifySource})
        lanes_.try_emplace(player, lane(player, makeThread(player)));
}

PlayerLane::Run ScriptLanes::lane(const std::string& player, Post post)
{
    return [this, player, post = std::move(post)](const std::string& source, PlayerLane::Done done) {
        post([this, player, source, done = std::move(done)] { done(perform(player, source)); });
    };
}

ScriptResult ScriptLanes::perform(const std::string& player, const std::string& source)
{
    if (!component_.isInstalled(player)) return noScript();
    component_.awaitConsent(player);
    return terms_.run(source, [this](const std::string& text) { return component_.execute(text); });
}

ScriptResult ScriptLanes::run(const std::string& source)
{
    const auto answer = std::make_shared<std::promise<ScriptResult>>();
    auto result = answer->get_future();
    poll(source, [answer](const ScriptResult& told) { answer->set_value(told); });
    if (result.wait_for(pollLimit) == std::future_status::ready) return result.get();
    return ScriptResult::ofText(poll::failed);
}

void ScriptLanes::poll(const std::string& source, PlayerLane::Done done)
{
    const auto lane = lanes_.find(playerIn(source));
    if (lane == lanes_.end())
        done(noScript());
    else
        lane->second.poll(source, std::move(done));
}

void ScriptLanes::command(const std::string& player, std::string source, PlayerLane::Done done)
{
    {
        const std::lock_guard lock(mutex_);
        ++commands_;
    }
    lanes_.at(player).command(std::move(source), [this, done = std::move(done)](const ScriptResult& result) {
        done(result);
        const std::lock_guard lock(mutex_);
        --commands_;
        changed_.notify_all();
    });
}

bool ScriptLanes::finish(std::chrono::milliseconds limit)
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [this] { return commands_ == 0; });
}

}  // namespace sonvara
