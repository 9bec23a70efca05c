// What happens between the steps of a thread that works with files, or holds it up as a slow disk does.
#pragma once

#include <functional>
#include <string>

namespace sonvara::test {

/// Any thread: the next time that any thread opens `path`, calls `action` on it right afterwards, once.
void afterOpening(std::string path, std::function<void()> action);

/// Whether an action still waits for its file.
[[nodiscard]] bool isOpeningAwaited();

/// Any thread: from now on every flush of a file to the disk calls `action` first; null ends that.
void beforeFlushing(std::function<void()> action);

}  // namespace sonvara::test
