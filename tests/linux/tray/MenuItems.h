// Items for the menus of the tests.
#pragma once

#include "ports/StatusBar.h"

#include <functional>
#include <string>
#include <utility>

namespace sonvara::test {

inline MenuItem action(const std::string& title, std::function<void()> run, bool isEnabled = true)
{
    MenuItem item;
    item.title = title;
    item.isEnabled = isEnabled;
    item.action = std::move(run);
    return item;
}

inline MenuItem text(const std::string& title)
{
    MenuItem item;
    item.title = title;
    return item;
}

}  // namespace sonvara::test
