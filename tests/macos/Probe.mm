#include "Probe.h"

#include "platform/macos/windows/CocoaWindows.h"

#import "platform/macos/system/Strings.h"

#import <AppKit/AppKit.h>

#include <algorithm>

namespace sonvara::test::probe {

namespace {

constexpr NSTimeInterval patience = 20;
constexpr std::string_view sheetMark = "/sheet";

NSWindow* windowAt(const std::string& place)
{
    const bool isSheet = place.ends_with(sheetMark);
    NSString* title = toNSString(isSheet ? place.substr(0, place.size() - sheetMark.size()) : place);
    for (NSWindow* window in [NSApp windows]) {
        if (![window isVisible] || ![[window title] isEqualToString:title]) continue;
        return isSheet ? [window attachedSheet] : window;
    }
    return nil;
}

/// Calls `visit` for each visible view below `view`.
void walk(NSView* view, const std::function<void(NSView*)>& visit)
{
    for (NSView* child in [view subviews]) {
        if ([child isHidden]) continue;
        visit(child);
        walk(child, visit);
    }
}

void walk(const std::string& place, const std::function<void(NSView*)>& visit)
{
    walk([windowAt(place) contentView], visit);
}

template <typename T>
T* find(const std::string& place, const std::function<bool(T*)>& accept)
{
    T* found = nil;
    walk(place, [&](NSView* view) {
        if (found != nil || ![view isKindOfClass:[T class]]) return;
        T* candidate = static_cast<T*>(view);
        if (accept(candidate)) found = candidate;
    });
    return found;
}

NSTextField* labelAt(const std::string& place, const std::string& text)
{
    return find<NSTextField>(place,
                             [&](NSTextField* field) { return toString([field stringValue]) == text; });
}

NSButton* buttonAt(const std::string& place, const std::string& title)
{
    return find<NSButton>(place, [&](NSButton* found) {
        return ![found isKindOfClass:[NSPopUpButton class]] && toString([found title]) == title;
    });
}

NSPopUpButton* popUpAt(const std::string& place)
{
    return find<NSPopUpButton>(place, [](NSPopUpButton*) { return true; });
}

}  // namespace

void startApplication()
{
    [[NSAutoreleasePool alloc] init];  // for the life of the process
    [NSApplication sharedApplication];
    [NSApp finishLaunching];
}

std::unique_ptr<Windows> makeWindows()
{
    return std::make_unique<CocoaWindows>();
}

bool runUntil(const std::function<bool()>& condition)
{
    NSDate* limit = [NSDate dateWithTimeIntervalSinceNow:patience];
    while (!condition()) {
        if ([limit timeIntervalSinceNow] < 0) return false;
        @autoreleasepool {
            NSEvent* event = [NSApp nextEventMatchingMask:NSEventMaskAny
                                                untilDate:[NSDate dateWithTimeIntervalSinceNow:0.01]
                                                   inMode:NSDefaultRunLoopMode
                                                  dequeue:YES];
            if (event != nil) [NSApp sendEvent:event];
        }
    }
    return true;
}

bool isShown(const std::string& place)
{
    return [windowAt(place) isVisible];
}

int countWindows(const std::string& title)
{
    int count = 0;
    for (NSWindow* window in [NSApp windows]) {
        if ([window isVisible] && toString([window title]) == title) ++count;
    }
    return count;
}

bool isAnySheetShown()
{
    return countWindows("") > 0;  // sheets have no titles
}

Size contentSize(const std::string& place)
{
    const NSSize size = [[windowAt(place) contentView] frame].size;
    return {size.width, size.height};
}

unsigned long styleMask(const std::string& title)
{
    return [windowAt(title) styleMask];
}

void pressCloseButton(const std::string& title)
{
    [windowAt(title) performClose:nil];
}

void miniaturize(const std::string& title)
{
    [windowAt(title) miniaturize:nil];
}

void pressEscape(const std::string& place)
{
    [NSApp sendAction:@selector(cancelOperation:) to:windowAt(place) from:nil];
}

void pressCommand(const std::string& title, const std::string& key)
{
    NSWindow* window = windowAt(title);
    [window makeKeyWindow];
    [NSApp sendEvent:[NSEvent keyEventWithType:NSEventTypeKeyDown
                                            location:NSZeroPoint
                                       modifierFlags:NSEventModifierFlagCommand
                                           timestamp:0
                                        windowNumber:[window windowNumber]
                                             context:nil
                                          characters:toNSString(key)
                         charactersIgnoringModifiers:toNSString(key)
                                           isARepeat:NO
                                             keyCode:0]];
}

std::vector<std::string> texts(const std::string& place)
{
    std::vector<std::string> found;
    walk(place, [&](NSView* view) {
        if ([view isKindOfClass:[NSTextField class]]) {
            found.push_back(toString([static_cast<NSTextField*>(view) stringValue]));
        }
    });
    return found;
}

bool hasText(const std::string& place, const std::string& text)
{
    return labelAt(place, text) != nil;
}

bool isWhole(const std::string& place, const std::string& text)
{
    NSTextField* label = labelAt(place, text);
    const NSSize given = [[label cell] titleRectForBounds:[label bounds]].size;
    const NSSize needed =
        [[label attributedStringValue] boundingRectWithSize:NSMakeSize(given.width, 10000)
                                                    options:NSStringDrawingUsesLineFragmentOrigin]
            .size;
    return label != nil && needed.height <= given.height && needed.width <= given.width;
}

double placeInSight(const std::string& place, const std::string& text)
{
    NSTextField* label = labelAt(place, text);
    NSScrollView* scroll = [label enclosingScrollView];
    const NSRect inDocument = [label convertRect:[label bounds] toView:[scroll documentView]];
    return NSMinY(inDocument) - NSMinY([scroll documentVisibleRect]);
}

void select(const std::string& place, const std::string& text)
{
    [windowAt(place) makeFirstResponder:labelAt(place, text)];
}

bool isSelectable(const std::string& place, const std::string& text)
{
    return [labelAt(place, text) isSelectable];
}

std::optional<ButtonState> button(const std::string& place, const std::string& title)
{
    NSButton* found = buttonAt(place, title);
    if (found == nil) return std::nullopt;
    return ButtonState{static_cast<bool>([found isEnabled]), [found state] == NSControlStateValueOn};
}

void press(const std::string& place, const std::string& title)
{
    [buttonAt(place, title) performClick:nil];
}

PopUpState popUp(const std::string& place)
{
    NSPopUpButton* found = popUpAt(place);
    PopUpState state;
    for (NSString* title in [found itemTitles]) state.options.push_back(toString(title));
    state.selected = static_cast<int>([found indexOfSelectedItem]);
    state.isEnabled = [found isEnabled];
    return state;
}

void choose(const std::string& place, int option)
{
    NSPopUpButton* found = popUpAt(place);
    [found selectItemAtIndex:option];
    [found sendAction:[found action] to:[found target]];
}

void scrollToEnd(const std::string& place)
{
    NSScrollView* scroll = find<NSScrollView>(place, [](NSScrollView*) { return true; });
    NSView* document = [scroll documentView];
    const CGFloat top = [document frame].size.height - [scroll documentVisibleRect].size.height;
    [document scrollPoint:NSMakePoint(0, std::max<CGFloat>(top, 0))];
}

std::string clipboard()
{
    return toString([[NSPasteboard generalPasteboard] stringForType:NSPasteboardTypeString]);
}

void setClipboard(const std::string& text)
{
    [[NSPasteboard generalPasteboard] declareTypes:@[ NSPasteboardTypeString ] owner:nil];
    [[NSPasteboard generalPasteboard] setString:toNSString(text) forType:NSPasteboardTypeString];
}

}  // namespace sonvara::test::probe
