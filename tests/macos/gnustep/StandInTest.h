// For tests with stand-ins: none of the documented rules may be broken.
#pragma once

#include "StandIns.h"

#include <gtest/gtest.h>

namespace sonvara::test {

class StandInTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(standins::takeViolations(), std::vector<std::string>()); }
};

}  // namespace sonvara::test
