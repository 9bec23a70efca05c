// Identifiers that nobody else has.
#include "support/Uuid.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace sonvara::test {
namespace {

TEST(UuidTest, IsRandomAndOfVersionFour)
{
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        const auto uuid = makeUuid();
        EXPECT_THAT(uuid, testing::MatchesRegex(
                              "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
        seen.insert(uuid);
    }
    EXPECT_EQ(seen.size(), 100U);
}

TEST(UuidTest, EveryOtherPlaceVaries)
{
    const auto first = makeUuid();
    std::string varied(first.size(), '-');
    for (int i = 0; i < 100; ++i) {
        const auto uuid = makeUuid();
        for (std::size_t place = 0; place < uuid.size(); ++place)
            if (uuid[place] != first[place]) varied[place] = 'x';
    }
    EXPECT_EQ(varied, "xxxxxxxx-xxxx--xxx-xxxx-xxxxxxxxxxxx");
}

TEST(UuidTest, EachPlaceTakesEachOfItsDigits)
{
    std::vector<std::set<char>> seen(36);
    for (int i = 0; i < 2000; ++i) {
        const auto uuid = makeUuid();
        for (std::size_t place = 0; place < uuid.size(); ++place) seen[place].insert(uuid[place]);
    }
    for (std::size_t place = 0; place < seen.size(); ++place) {
        const bool isFixed = place == 8 || place == 13 || place == 14 || place == 18 || place == 23;
        EXPECT_EQ(seen[place].size(), isFixed ? 1U : place == 19 ? 4U : 16U) << place;
    }
}

TEST(UuidTest, NoPlaceRepeatsTheOneBefore)
{
    std::set<std::size_t> different;
    for (int i = 0; i < 100; ++i) {
        const auto uuid = makeUuid();
        for (const std::size_t place : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 24U, 25U, 26U, 27U, 28U, 29U, 30U, 31U})
            if (uuid[place] != uuid[place + 1]) different.insert(place);
    }
    EXPECT_EQ(different.size(), 15U);
}

TEST(UuidTest, NoPlaceFollowsFromTheOneBefore)
{
    std::set<std::size_t> independent;
    for (int i = 0; i < 100; ++i) {
        const auto uuid = makeUuid();
        const auto bit = [&uuid](std::size_t place, int which) {
            return (std::stoi(uuid.substr(place, 1), nullptr, 16) >> which & 1) != 0;
        };
        for (const std::size_t place :
             {0U, 1U, 2U, 3U, 4U, 5U, 6U, 9U, 24U, 25U, 26U, 27U, 28U, 29U, 30U, 31U, 32U, 33U, 34U})
            if (bit(place, 3) != bit(place + 1, 0)) independent.insert(place);
    }
    EXPECT_EQ(independent.size(), 19U);
}

}  // namespace
}  // namespace sonvara::test
