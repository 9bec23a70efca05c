// A GoogleTest program with an application object, which the adapters need.
#include "Probe.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    sonvara::test::probe::startApplication();
    return RUN_ALL_TESTS();
}
