#import "platform/macos/system/MainMenu.h"

#include <initializer_list>

namespace sonvara {

namespace {

struct Item {
    NSString* title;
    SEL action;
    NSString* key;  // with the Command key
};

void addMenu(NSMenu* bar, NSString* title, std::initializer_list<Item> items)
{
    const auto menu = ObjcPtr<NSMenu>::adopt([[NSMenu alloc] initWithTitle:title]);
    for (const Item& item : items)
        [menu.get() addItemWithTitle:item.title action:item.action keyEquivalent:item.key];
    NSMenuItem* place = static_cast<NSMenuItem*>([bar addItemWithTitle:title
                                                                action:nullptr
                                                         keyEquivalent:@""]);
    [bar setSubmenu:menu.get() forItem:place];
}

}  // namespace

ObjcPtr<NSMenu> makeMainMenu()
{
    auto bar = ObjcPtr<NSMenu>::adopt([[NSMenu alloc] initWithTitle:@"Sonvara"]);
    addMenu(bar.get(), @"Sonvara", {{@"Quit Sonvara", @selector(terminate:), @"q"}});
    addMenu(bar.get(), @"Edit",
            {{@"Copy", @selector(copy:), @"c"}, {@"Select All", @selector(selectAll:), @"a"}});
    addMenu(
        bar.get(), @"Window",
        {{@"Close", @selector(performClose:), @"w"}, {@"Minimize", @selector(performMiniaturize:), @"m"}});
    return bar;
}

}  // namespace sonvara
