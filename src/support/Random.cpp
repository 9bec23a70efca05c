#include "support/Random.h"

namespace sonvara {
namespace {

std::mt19937_64 seeded()
{
    std::random_device source;
    std::seed_seq seed{source(), source(), source(), source()};
    return std::mt19937_64(seed);
}

}  // namespace

std::mt19937_64& randomNumbers()
{
    thread_local std::mt19937_64 numbers = seeded();
    return numbers;
}

}  // namespace sonvara
