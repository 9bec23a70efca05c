// Acts on a running program from a thread of its own, as a user does: while a menu is open, the main thread
// is inside its tracking loop and cannot run a test.
#pragma once

#include "platform/macos/system/DispatchTask.h"

#include <chrono>
#include <functional>
#include <future>
#include <type_traits>

namespace sonvara::test {

/// Runs `action` on the main thread, also while a menu is open, and returns its result.
template <typename Action>
std::invoke_result_t<Action> onMain(Action action)
{
    std::packaged_task<std::invoke_result_t<Action>()> task(std::move(action));
    auto result = task.get_future();
    postToMainThread([&task] { task(); });
    return result.get();
}

/// Looks on the main thread whether `condition` holds, again and again for 20 seconds at most.
[[nodiscard]] inline bool eventually(const std::function<bool()>& condition)
{
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!onMain(condition)) {
        if (std::chrono::steady_clock::now() > limit) return false;
        std::promise<void>().get_future().wait_for(std::chrono::milliseconds(5));  // lets the others work
    }
    return true;
}

}  // namespace sonvara::test
