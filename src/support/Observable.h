// A stored property that tells its subscribers of every assignment.
#pragma once

#include "support/Callbacks.h"

#include <functional>
#include <utility>

namespace sonvara {

/// A value of type `T` that publishes every assignment, even of an unchanged value. One thread only.
///
/// Subscribers are called before the new value is stored: a subscriber that reads the property back
/// still sees the old value. There is no filter, delay or change of thread.
template <typename T>
class Observable {
public:
    explicit Observable(T initial = T{}) : value_(std::move(initial)) {}
    Observable(const Observable&) = delete;
    Observable& operator=(const Observable&) = delete;

    /// The value of the last completed assignment.
    [[nodiscard]] const T& get() const { return value_; }

    /// Publishes `value` to all subscribers, then stores it.
    void set(T value)
    {
        subscribers_.call(value);
        value_ = std::move(value);
    }

    /// Changes a copy of the value with `change`, then publishes and stores it as one assignment.
    template <typename Change>
    void modify(Change change)
    {
        T value = value_;
        change(value);
        set(std::move(value));
    }

    /// Calls `subscriber` at once with the current value and then with each assigned value, until
    /// the returned handle is dropped.
    [[nodiscard]] Subscription subscribe(std::function<void(const T&)> subscriber) const
    {
        subscriber(value_);
        return subscribers_.add(std::move(subscriber));
    }

private:
    T value_;
    mutable Callbacks<const T&> subscribers_;
};

}  // namespace sonvara
