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

    const std::lock_guard lock(mutex_);
    polls_.push_back(*player);
    // The event only wakes: the poll crosses under the mutex. It is behind the line that a change of tracks brings:
    // all players are asked, and when they answer there is less processor left for the line.
    QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::LowEventPriority);
    const auto known = answers_.find(*player);
    return ScriptResult::ofText(known == answers_.end() ? poll::notRunning : known->second);
}

void PlayerScriptRunner::know(PlayerKind player, const std::string& answer)
{
    const std::lock_guard lock(mutex_);
    answers_[player] = answer;
}

bool PlayerScriptRunner::event(QEvent* event)
{
    if (event->type() != QEvent::User) return QObject::event(event);
    std::vector<PlayerKind> polls;
    {
        const std::lock_guard lock(mutex_);
        polls.swap(polls_);
    }
    for (const auto player : polls) polled_(player);
    return true;
}

}  // namespace sonvara
