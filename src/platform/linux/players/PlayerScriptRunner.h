// Brings polls from the worker threads to the main thread, and the answers back.
#pragma once

#include "platform/linux/players/PlayerIdentity.h"
#include "ports/ScriptRunner.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace sonvara {

/// Understands two scripts: for each of the two players the poll. A poll fails when the main thread does not
/// come to it within `limit`. The runner is made and destroyed on the main thread; polls that wait then fail.
class PlayerScriptRunner final : public QObject, public ScriptRunner {
public:
    /// Answers a poll, on the main thread.
    using Handler = std::function<std::string(PlayerKind)>;

    static constexpr std::chrono::milliseconds limit{1000};

    explicit PlayerScriptRunner(Handler handler) : handler_(std::move(handler)) {}

    [[nodiscard]] ScriptResult run(const std::string& source) override;

protected:
    bool event(QEvent* event) override;

private:
    struct Request {
        PlayerKind player;
        std::promise<std::string> answer;
    };

    Handler handler_;
    std::mutex mutex_;
    std::vector<Request> requests_;  // under the mutex
};

}  // namespace sonvara
