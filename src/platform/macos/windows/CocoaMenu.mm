#import "platform/macos/windows/CocoaMenu.h"

#import "platform/macos/system/Strings.h"
#import "platform/macos/windows/ActionTarget.h"
#import "platform/macos/windows/CocoaStyle.h"

#include <utility>

namespace sonvara {

namespace {

ObjcPtr<NSMenuItem> makeItem(MenuItem item)
{
    if (item.isSeparator)
        return ObjcPtr<NSMenuItem>::share(static_cast<NSMenuItem*>([NSMenuItem separatorItem]));
    auto native = ObjcPtr<NSMenuItem>::adopt([[NSMenuItem alloc] initWithTitle:toNSString(item.title)
                                                                        action:nullptr
                                                                 keyEquivalent:@""]);
    if (item.attributedTitle) [native.get() setAttributedTitle:attributed(*item.attributedTitle)];
    [native.get() setEnabled:(item.isEnabled ? YES : NO)];
    [native.get() setState:(item.isChecked.value_or(false) ? NSControlStateValueOn : NSControlStateValueOff)];
    if (item.action) {
        const auto target =
            ObjcPtr<SNVActionTarget>::adopt([[SNVActionTarget alloc] initWithAction:std::move(item.action)]);
        [native.get() setRepresentedObject:target.get()];  // an item holds its target weakly, but this not
        [native.get() setTarget:target.get()];
        [native.get() setAction:@selector(perform:)];
    }
    return native;
}

}  // namespace

CocoaMenu::CocoaMenu() : menu_(ObjcPtr<NSMenu>::adopt([[NSMenu alloc] initWithTitle:@""]))
{
    [menu_.get() setAutoenablesItems:NO];
}

void CocoaMenu::setItems(std::vector<MenuItem> items)
{
    [menu_.get() removeAllItems];
    for (MenuItem& item : items) [menu_.get() addItem:makeItem(std::move(item)).get()];
}

Subscription CocoaMenu::onWillOpen(std::function<void()> handler)
{
    const auto observer =
        ObjcPtr<SNVActionTarget>::adopt([[SNVActionTarget alloc] initWithAction:std::move(handler)]);
    [[NSNotificationCenter defaultCenter] addObserver:observer.get()
                                             selector:@selector(perform:)
                                                 name:NSMenuDidBeginTrackingNotification
                                               object:menu_.get()];
    // The centre holds its observers weakly.
    return Subscription([observer] { [[NSNotificationCenter defaultCenter] removeObserver:observer.get()]; });
}

}  // namespace sonvara
