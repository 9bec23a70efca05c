// A list of callbacks that stays well defined while callbacks come and go during a delivery.
#pragma once

#include "support/Subscription.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace sonvara {

/// Callbacks in order of registration. All calls on one thread.
///
/// A callback that is dropped during a delivery is not called again, not even by that delivery; one
/// that is added during a delivery is called by it, too, so that no newcomer misses the event.
template <typename... Args>
class Callbacks {
public:
    using Callback = std::function<void(Args...)>;

    /// Registers `callback` until the returned handle is dropped. The handle may outlive this list.
    [[nodiscard]] Subscription add(Callback callback)
    {
        auto slot = std::make_shared<Slot>(Slot{std::move(callback)});
        state_->slots.push_back(slot);
        return Subscription([state = std::weak_ptr<State>(state_), slot = std::move(slot)] {
            slot->live = false;
            if (const auto list = state.lock()) list->sweep();
        });
    }

    /// Calls every live callback once, in order of registration.
    void call(Args... args) const
    {
        const auto state = state_;  // survives a callback that destroys this list
        ++state->depth;
        for (std::size_t i = 0; i < state->slots.size(); ++i) {
            const auto slot = state->slots[i];  // survives a callback that drops its own handle
            if (slot->live) slot->callback(args...);
        }
        --state->depth;
        state->sweep();
    }

private:
    struct Slot {
        Callback callback;
        bool live = true;
    };
    struct State {
        std::vector<std::shared_ptr<Slot>> slots;
        int depth = 0;  // deliveries under way; their indices must stay valid

        void sweep()
        {
            if (depth == 0) std::erase_if(slots, [](const auto& slot) { return !slot->live; });
        }
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace sonvara
