// The counter that tells current requests from stale ones.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <limits>

namespace sonvara {

/// Grows by one at each new track and each stop. A request notes the value when it is made; it is
/// stale as soon as the counter has moved on.
class Generation {
public:
    explicit Generation(std::int64_t start = 0) : value_(start) {}

    [[nodiscard]] std::int64_t value() const { return value_; }

    /// Moves on by one. Running over would make old requests look current, so it ends the process.
    void advance()
    {
        if (value_ == std::numeric_limits<std::int64_t>::max()) std::abort();
        ++value_;
    }

private:
    std::int64_t value_;
};

}  // namespace sonvara
