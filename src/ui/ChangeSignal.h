// "Something that a view shows has changed": many sources, one callback.
#pragma once

#include "support/Observable.h"
#include "support/Subscription.h"

#include <functional>
#include <memory>
#include <vector>

namespace sonvara {

class MainQueue;

/// Calls a view back on the next turn of the main queue after any of its sources changed: properties
/// announce a change before they hold the new value, and the view reads them again. Several changes in
/// one turn give one call. Main thread.
class ChangeSignal final : public std::enable_shared_from_this<ChangeSignal> {
public:
    [[nodiscard]] static std::shared_ptr<ChangeSignal> create(MainQueue& mainQueue,
                                                              std::function<void()> changed);

    /// Every assignment of `property` counts as a change. The current value does not.
    template <typename T>
    void observe(const Observable<T>& property)
    {
        // A new subscriber is called with the current value at once, before there is a handle to keep.
        auto isFirst = std::make_shared<bool>(true);
        sources_.push_back(property.subscribe([weak = weak_from_this(), isFirst](const T&) {
            if (std::exchange(*isFirst, false)) return;
            if (const auto signal = weak.lock()) signal->raise();
        }));
    }

    /// Keeps any other registration; its source calls `raise`.
    void keep(Subscription source) { sources_.push_back(std::move(source)); }

    /// Something changed.
    void raise();

    /// The handle for the view: the signal and its sources end when it is dropped.
    [[nodiscard]] Subscription handle();

private:
    ChangeSignal(MainQueue& mainQueue, std::function<void()> changed);

    MainQueue& mainQueue_;
    std::function<void()> changed_;
    std::vector<Subscription> sources_;
    bool isRaised_ = false;
};

}  // namespace sonvara
