// A handle that keeps a callback registered: the callback ends when the handle is dropped.
#pragma once

#include <functional>
#include <utility>

namespace sonvara {

/// Owns one registration with an observable property, a notification centre or a port.
/// Movable, not copyable; an empty handle owns nothing. Dropping it is allowed at any time,
/// also from inside the callback that it keeps registered: no further call follows.
class Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
    Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept
    {
        if (this != &other) {
            reset();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }
    ~Subscription() { reset(); }

    /// Ends the registration now; does nothing on an empty handle.
    void reset()
    {
        if (auto cancel = std::exchange(cancel_, nullptr)) cancel();
    }

private:
    std::function<void()> cancel_;
};

}  // namespace sonvara
