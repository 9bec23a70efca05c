// The digits of the user's locale.
#include "platform/macos/system/LocaleDigits.h"

#include <gtest/gtest.h>

namespace sonvara::test {
namespace {

TEST(LocaleDigitsTest, AreLatinHere)
{
    EXPECT_EQ(zeroDigit(), "0");  // of other languages only a Mac knows them
}

}  // namespace
}  // namespace sonvara::test
