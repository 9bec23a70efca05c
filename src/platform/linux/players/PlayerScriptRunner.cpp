#include "platform/linux/players/PlayerScriptRunner.h"

#include "platform/linux/players/PlayerReports.h"
#include "support/PlayerScripts.h"

#include <QCoreApplication>
#include <QEvent>

namespace sonvara {

ScriptResult PlayerScriptRunner::run(const std::string& source)
{
    const auto player = polledPlayer(source);
    if (!player) return ScriptResult::ofError("the text is no command that a player understands");

    std::promise<std::string> promise;
    auto answer = promise.get_future();
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back({*player, std::move(promise)});
    }
    // The event only wakes: the request crosses under the mutex.
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    if (answer.wait_for(limit) != std::future_status::ready) return ScriptResult::ofText(poll::failed);
    try {
        return ScriptResult::ofText(answer.get());
    } catch (const std::future_error&) {  // the runner has gone
        return ScriptResult::ofText(poll::failed);
    }
}

bool PlayerScriptRunner::event(QEvent* event)
{
    if (event->type() != QEvent::User) return QObject::event(event);
    std::vector<Request> requests;
    {
        const std::lock_guard lock(mutex_);
        requests.swap(requests_);
    }
    for (auto& each : requests) each.answer.set_value(handler_(each.player));
    return true;
}

}  // namespace sonvara
