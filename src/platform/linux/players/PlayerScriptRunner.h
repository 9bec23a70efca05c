// Answers the core's polls on its worker threads, and tells the main thread of them.
#pragma once

#include "platform/linux/players/PlayerIdentity.h"
#include "ports/ScriptRunner.h"

#include <QObject>

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace sonvara {

/// Understands two scripts: for each of the two players the poll. It waits for nothing: the answer is what is known at
/// that moment, without the way to the main thread and back. A notification could pass an answer that was under way,
/// and the older of the two would be believed. To be made and destroyed on the main thread.
class PlayerScriptRunner final : public QObject, public ScriptRunner {
public:
    /// Called on the main thread, for each poll.
    using Polled = std::function<void(PlayerKind)>;

    explicit PlayerScriptRunner(Polled polled) : polled_(std::move(polled)) {}

    [[nodiscard]] ScriptResult run(const std::string& source) override;

    /// What polls of that player are answered from now on; before, it is not running. Any thread.
    void know(PlayerKind player, const std::string& answer);

protected:
    bool event(QEvent* event) override;

private:
    Polled polled_;
    std::mutex mutex_;  // guards the rest
    std::map<PlayerKind, std::string> answers_;
    std::vector<PlayerKind> polls_;  // of which the main thread has not been told
};

}  // namespace sonvara
