// The core beside model players, as far as their volume goes.
#pragma once

#include "Dice.h"
#include "ModelDesktop.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace sonvara::test {

/// The volume in percent to which the core lowers this one.
inline int lowOf(double volume)
{
    const int percent = static_cast<int>(std::lround(std::clamp(volume, 0.0, 1.0) * 100));
    return std::max(percent * 35 / 100, 12);
}

/// What the core does about lines, as its own rules say, with workers that take their time.
class ModelCore {
public:
    ModelCore(ModelDesktop& desktop, Dice& dice) : desktop_(desktop), dice_(dice) {}

    int ducksUnderWay = 0;
    int lines = 0;

    void say()
    {
        ++lines;
        desktop_.loweredPlayers->lineBegan();
        if (recorded_) return;
        ++ducksUnderWay;
        soon([this] {
            desktop_.loweredPlayers->read("Music", [this](const auto& reading) {
                if (!reading) {
                    --ducksUnderWay;
                    return;
                }
                soon([this, reading = *reading] {
                    desktop_.loweredPlayers->duck("Music", reading, lowOf(reading.volume));
                    soon([this] { recorded_ = true, --ducksUnderWay; });
                });
            });
        });
    }
    void fallSilent()
    {
        if (lines == 0) return;
        --lines;
        desktop_.loweredPlayers->lineEnded();
        desktop_.later([this] {
            if (!recorded_) return;
            recorded_ = false;
            soon([this] { desktop_.loweredPlayers->restore("Music"); });
        });
    }
    void die() { lines = ducksUnderWay = 0, recorded_ = false, ++life_; }

private:
    void soon(const std::function<void()>& happening)
    {
        desktop_.schedule.after(Milliseconds(dice_.number(0, 20)), [this, happening, life = life_] {
            if (life == life_) desktop_.later(happening);
        });
    }

    ModelDesktop& desktop_;
    Dice& dice_;
    bool recorded_ = false;
    int life_ = 0;  ///< what a dead core has begun does not happen
};

}  // namespace sonvara::test
