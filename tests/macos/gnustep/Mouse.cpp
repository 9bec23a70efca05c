#include "Mouse.h"

#include "Command.h"
#include "Director.h"
#include "StripProbe.h"

namespace sonvara::test::probe {

namespace {

bool xdotool(const std::string& arguments)
{
    return runCommand("xdotool " + arguments);
}

std::string moveTo(Spot spot)
{
    return "mousemove " + std::to_string(spot.x) + " " + std::to_string(spot.y);
}

}  // namespace

bool pressStatusItem()
{
    return xdotool(moveTo(onMain(statusItemSpot)) + " mousedown 1") && eventually(isMenuOpen);
}

bool releaseOnItem(const std::string& title)
{
    const auto spot = onMain([&title] { return openMenuSpot(title); });
    if (!spot || !xdotool(moveTo(*spot))) return false;
    const bool isUnderMouse = eventually([&title] { return highlightedItem() == title; });
    return xdotool("mouseup 1") && isUnderMouse && eventually([] { return !isMenuOpen(); });
}

bool chooseFromStatusMenu(const std::string& title)
{
    return eventually(hasStatusItem) && pressStatusItem() && releaseOnItem(title);
}

}  // namespace sonvara::test::probe
