#include "StandIns.h"

#include <mutex>
#include <utility>

namespace sonvara::test::standins {

namespace {

std::mutex mutex;
std::vector<std::string> rules;

}  // namespace

void violated(const std::string& rule)
{
    const std::lock_guard lock(mutex);
    rules.push_back(rule);
}

std::vector<std::string> takeViolations()
{
    const std::lock_guard lock(mutex);
    return std::exchange(rules, {});
}

}  // namespace sonvara::test::standins
