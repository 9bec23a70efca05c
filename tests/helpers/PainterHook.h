// Who draws.
#pragma once

namespace sonvara::test {

/// How many painters this thread has made of a picture or a widget so far.
[[nodiscard]] int paintersOfThisThread();

}  // namespace sonvara::test
