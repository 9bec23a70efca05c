// What a queue runs.
#pragma once

#include <functional>

namespace sonvara {

/// A closure that a queue runs once and then destroys. It must not throw. A queue that ends before
/// the task's turn destroys it without running it.
using Task = std::function<void()>;

}  // namespace sonvara
