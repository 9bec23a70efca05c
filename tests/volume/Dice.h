// Numbers by chance, the same ones for the same seed.
#pragma once

#include <random>

namespace sonvara::test {

class Dice {
public:
    explicit Dice(unsigned seed) : random_(seed) {}

    /// Both included.
    int number(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }
    double percent(int least, int most) { return number(least, most) / 100.0; }
    /// One of three times.
    bool chance() { return number(0, 2) == 0; }

private:
    std::mt19937 random_;
};

}  // namespace sonvara::test
