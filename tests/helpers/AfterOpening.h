// What happens between the opening of a file and the next look at it.
#pragma once

#include <functional>
#include <string>

namespace sonvara::test {

/// Any thread: the next time that this thread opens `path`, calls `action` right after it, once.
void afterOpening(std::string path, std::function<void()> action);

/// Whether an action of this thread still waits for its file.
[[nodiscard]] bool isOpeningAwaited();

}  // namespace sonvara::test
