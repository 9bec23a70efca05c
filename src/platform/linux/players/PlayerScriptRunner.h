// Brings scripts from the worker threads to the main thread, and the answers back.
#pragma once

#include "platform/linux/players/ScriptCommand.h"
#include "ports/ScriptRunner.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace sonvara {

/// A script ends within `limit`, whatever the players and the main thread do. The runner is made and
/// destroyed on the main thread; scripts that wait for their answer then end as failed.
class PlayerScriptRunner final : public QObject, public ScriptRunner {
public:
    using Answer = std::function<void(ScriptResult)>;
    /// Carries out a command on the main thread and answers at most once.
    using Handler = std::function<void(const ScriptCommand&, const Answer&)>;

    /// Any thread: the answer to a command, if it is known without the main thread.
    using Shortcut = std::function<std::optional<ScriptResult>(const ScriptCommand&)>;

    static constexpr std::chrono::milliseconds limit{1000};

    PlayerScriptRunner(Handler handler, Shortcut shortcut)
        : handler_(std::move(handler)),
          shortcut_(std::move(shortcut))
    {}

    [[nodiscard]] ScriptResult run(const std::string& source) override;

protected:
    bool event(QEvent* event) override;

private:
    struct Request {
        ScriptCommand command;
        Answer answer;
    };

    Handler handler_;
    Shortcut shortcut_;
    std::mutex mutex_;
    std::vector<Request> requests_;  // under the mutex
};

}  // namespace sonvara
