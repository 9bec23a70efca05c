// The digits of the user's locale, which the environment names; none need be installed.
#include "platform/linux/system/LocaleDigits.h"

#include "helpers/ScopedVariable.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace sonvara::test {
namespace {

[[noreturn]] void sayZero()
{
    std::fputs(("zero: " + zeroDigit() + "!").c_str(), stderr);
    std::exit(EXIT_SUCCESS);
}

/// In a process of its own: Qt asks the environment once.
void expectZero(const char* locale, const std::string& zero)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const ScopedVariable all("LC_ALL", locale);
    EXPECT_EXIT(sayZero(), testing::ExitedWithCode(EXIT_SUCCESS), "zero: " + zero + "!");
}

TEST(LocaleDigitsDeathTest, AreThoseOfTheUsersLanguage)
{
    expectZero("ar_EG.UTF-8", "\u0660");
    expectZero("mr_IN.UTF-8", "\u0966");
}

TEST(LocaleDigitsDeathTest, AreLatinInMostLanguagesAndWithoutOne)
{
    expectZero("de_DE.UTF-8", "0");
    expectZero("C", "0");
}

}  // namespace
}  // namespace sonvara::test
