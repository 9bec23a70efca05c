#include "platform/linux/players/PlayerScriptRunner.h"

#include <QCoreApplication>
#include <QEvent>

#include <condition_variable>
#include <memory>
#include <optional>
#include <utility>

namespace sonvara {
namespace {

// Where a worker waits for the answer to its script. The first answer counts.
class AnswerSlot {
public:
    void put(ScriptResult result)
    {
        const std::lock_guard lock(mutex_);
        if (result_) return;
        result_ = std::move(result);
        filled_.notify_one();
    }
    std::optional<ScriptResult> take(std::chrono::milliseconds limit)
    {
        std::unique_lock lock(mutex_);
        filled_.wait_for(lock, limit, [this] { return result_.has_value(); });
        return std::move(result_);
    }

private:
    std::mutex mutex_;
    std::condition_variable filled_;
    std::optional<ScriptResult> result_;
};

}  // namespace

ScriptResult PlayerScriptRunner::run(const std::string& source)
{
    const auto command = recognise(source);
    if (!command) return ScriptResult::ofError("the text is no command that a player understands");
    if (auto known = shortcut_(*command)) return *std::move(known);

    const auto failure = pollFailure();
    const auto slot = std::make_shared<AnswerSlot>();
    // When nobody is left who could answer, the last one to go says so.
    std::shared_ptr<AnswerSlot> sender(slot.get(), [slot, failure](AnswerSlot* each) { each->put(failure); });
    {
        const std::lock_guard lock(mutex_);
        requests_.push_back({*command, [sender = std::move(sender)](ScriptResult result) {
                                 sender->put(std::move(result));
                             }});
        // The event only wakes: the request crosses under the mutex.
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }
    return slot->take(limit).value_or(failure);
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

}  // namespace sonvara
