// Virtual time, for the tests of the volume.
#pragma once

#include "volume/LoweredPlayer.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <utility>

namespace sonvara::test {

using namespace std::chrono_literals;
using Milliseconds = std::chrono::milliseconds;

/// What is to happen later happens when the test lets time pass.
class Schedule {
public:
    [[nodiscard]] VolumeTime now() const { return now_; }
    void after(Milliseconds delay, std::function<void()> happening)
    {
        due_.emplace(now_ + delay, std::move(happening));
    }
    void pass(Milliseconds time)
    {
        const auto until = now_ + time;
        while (!due_.empty() && due_.begin()->first <= until) {
            auto next = due_.extract(due_.begin());
            now_ = std::max(now_, next.key());
            next.mapped()();
        }
        now_ = until;
    }

private:
    VolumeTime now_{100h};
    std::multimap<VolumeTime, std::function<void()>> due_;
};

}  // namespace sonvara::test
