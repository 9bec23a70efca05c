// The counter that tells current requests from stale ones.
#include "speech/SpeechManager.h"

#include <gtest/gtest.h>

#include <limits>

namespace sonvara::test {
namespace {

TEST(GenerationTest, GrowsByOne)
{
    Generation generation;
    EXPECT_EQ(generation.value(), 0);
    generation.advance();
    EXPECT_EQ(generation.value(), 1);
}

TEST(GenerationDeathTest, RunningOverEndsTheProcess)
{
    Generation generation(std::numeric_limits<std::int64_t>::max() - 1);
    generation.advance();
    EXPECT_DEATH(generation.advance(), "");
}

}  // namespace
}  // namespace sonvara::test
