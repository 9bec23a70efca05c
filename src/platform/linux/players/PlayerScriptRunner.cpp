#include "platform/linux/players/PlayerScriptRunner.h"

#include <QCoreApplication>
#include <QEvent>

#include <future>
#include <memory>
#include <utility>

namespace sonvara::players {
namespace {

ScriptResult failureOf(const ScriptCommand& command)
{
    if (command.verb == ScriptCommand::Verb::poll) return pollFailure();
    return errorAnswer(std::string(nameOf(command.player)) + " does not answer");
}

}  // namespace

ScriptResult PlayerScriptRunner::run(const std::string& source)
{
    const auto command = recognise(source);
    if (!command) return errorAnswer("the text is no command that a player understands");

    auto promise = std::make_shared<std::promise<ScriptResult>>();
    auto answer = promise->get_future();
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back({*command, [promise = std::move(promise)](ScriptResult result) {
                                 promise->set_value(std::move(result));
                             }});
        // The event only wakes: the request crosses under the mutex.
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }
    if (answer.wait_for(limit) != std::future_status::ready) return failureOf(*command);
    try {
        return answer.get();
    } catch (const std::future_error&) {  // nobody is left who could answer
        return failureOf(*command);
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
    for (const auto& each : requests) handler_(each.command, each.answer);
    return true;
}

}  // namespace sonvara::players
