#include "StripProbe.h"

#import "platform/macos/system/Strings.h"

#import <AppKit/AppKit.h>

namespace sonvara::test::probe {

namespace {

NSStatusBarButton* statusButton()
{
    for (NSWindow* window in [NSApp windows]) {
        if (![window isVisible] || ![[window title] isEqualToString:@"status item"]) continue;
        return [[[window contentView] subviews] objectAtIndex:0];
    }
    return nil;
}

NSMenuView* menuView()
{
    return static_cast<NSMenuView*>([[statusButton() menu] menuRepresentation]);
}

Spot toSpot(NSPoint onScreen)
{
    const CGFloat height = [[NSScreen mainScreen] frame].size.height;
    return {static_cast<int>(onScreen.x), static_cast<int>(height - onScreen.y)};
}

NSPoint middle(NSRect rect)
{
    return NSMakePoint(NSMidX(rect), NSMidY(rect));
}

}  // namespace

bool hasStatusItem()
{
    return statusButton() != nil;
}

std::vector<ShownItem> statusMenu()
{
    std::vector<ShownItem> items;
    for (NSMenuItem* item in [[statusButton() menu] itemArray]) {
        NSAttributedString* styled = [item attributedTitle];
        const bool isStyled = [styled length] > 0;
        items.push_back({[item isSeparatorItem] ? "-" : toString(isStyled ? [styled string] : [item title]),
                         static_cast<bool>([item isEnabled]),
                         [item state] == NSControlStateValueOn,
                         isStyled});
        if ([item isSeparatorItem]) items.back().isEnabled = false;
    }
    return items;
}

std::optional<StatusImage> statusImage()
{
    NSImage* image = [statusButton() image];
    if (image == nil) return std::nullopt;
    return StatusImage{toString([image name]), toString([image accessibilityDescription]), [image size].width,
                       [image size].height, static_cast<bool>([image isTemplate])};
}

bool showsThePictureAsItIs()
{
    NSStatusBarButton* button = statusButton();
    return [button imagePosition] == NSImageOnly &&
           [[button cell] imageScaling] == NSImageScaleProportionallyDown && ![button appearsDisabled];
}

Spot statusItemSpot()
{
    return toSpot(middle([[statusButton() window] frame]));
}

bool isMenuOpen()
{
    return [[menuView() window] isVisible];
}

std::string highlightedItem()
{
    const NSInteger index = [menuView() highlightedItemIndex];
    if (!isMenuOpen() || index < 0) return {};
    return toString([[[statusButton() menu] itemAtIndex:index] title]);
}

std::optional<Spot> openMenuSpot(const std::string& title)
{
    NSMenuView* view = menuView();
    const NSInteger index = [[statusButton() menu] indexOfItemWithTitle:toNSString(title)];
    if (!isMenuOpen() || index < 0) return std::nullopt;
    const NSRect inView = [view rectOfItemAtIndex:index];
    const NSRect inWindow = [view convertRect:inView toView:nil];
    return toSpot([[view window] convertBaseToScreen:middle(inWindow)]);
}

}  // namespace sonvara::test::probe
