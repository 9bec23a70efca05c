// How the dispatch queues run a C++ closure.
#pragma once

#include "ports/Queues.h"

namespace sonvara {

/// Moves `task` to the heap, for a queue that takes a function and a pointer.
[[nodiscard]] void* makeDispatchTask(Task task);

/// Runs and destroys what `makeDispatchTask` returned, in an autorelease pool of its own: the queues
/// drain theirs at times of their own choice, and a worker may live as long as the program.
void runDispatchTask(void* task);

/// Any thread: runs `task` later on the main thread, in order of submission. It runs also while a
/// menu is open or a control is tracking the mouse.
void postToMainThread(Task task);

}  // namespace sonvara
