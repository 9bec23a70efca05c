#include "platform/macos/system/CocoaApplication.h"

#import "platform/macos/system/MainMenu.h"
#import "platform/macos/system/ObjcPtr.h"
#import "platform/macos/system/Strings.h"

#import <AppKit/AppKit.h>

#include <cstdlib>
#include <utility>

@interface SNVApplicationDelegate : NSObject <NSApplicationDelegate> {
    std::weak_ptr<sonvara::ApplicationDelegate> delegate_;
    std::function<void()> willTerminate_;
}
- (void)setDelegate:(std::weak_ptr<sonvara::ApplicationDelegate>)delegate;
- (void)setWillTerminate:(std::function<void()>)handler;
@end

@implementation SNVApplicationDelegate

- (void)setDelegate:(std::weak_ptr<sonvara::ApplicationDelegate>)delegate
{
    delegate_ = std::move(delegate);
}

- (void)setWillTerminate:(std::function<void()>)handler
{
    willTerminate_ = std::move(handler);
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification
{
    (void)notification;
    if (const auto delegate = delegate_.lock()) delegate->applicationDidFinishLaunching();
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)hasVisibleWindows
{
    (void)sender, (void)hasVisibleWindows;
    if (const auto delegate = delegate_.lock()) delegate->applicationDidReopen();
    return NO;  // the system need not do anything more
}

- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application
{
    (void)application;
    return YES;  // there is nothing to restore, and nothing in it to be read by others
}

- (void)applicationWillTerminate:(NSNotification*)notification
{
    (void)notification;
    if (willTerminate_) willTerminate_();
}

@end

namespace sonvara {

struct CocoaApplication::Impl {
    // For what is autoreleased before the event loop has a pool of its own.
    ObjcPtr<NSAutoreleasePool> pool = ObjcPtr<NSAutoreleasePool>::adopt([[NSAutoreleasePool alloc] init]);
    ObjcPtr<SNVApplicationDelegate> delegate =
        ObjcPtr<SNVApplicationDelegate>::adopt([[SNVApplicationDelegate alloc] init]);
};

CocoaApplication::CocoaApplication() : impl_(std::make_unique<Impl>())
{
    [[NSApplication sharedApplication] setDelegate:impl_->delegate.get()];
    [NSApp setMainMenu:makeMainMenu().get()];
}

CocoaApplication::~CocoaApplication()
{
    [NSApp setDelegate:nil];
}

void CocoaApplication::setDelegate(std::weak_ptr<ApplicationDelegate> delegate)
{
    [impl_->delegate.get() setDelegate:std::move(delegate)];
}

int CocoaApplication::run()
{
    [NSApp run];
    return EXIT_SUCCESS;
}

void CocoaApplication::onWillTerminate(std::function<void()> handler)
{
    [impl_->delegate.get() setWillTerminate:std::move(handler)];
}

void CocoaApplication::activateIgnoringOtherApps()
{
    [NSApp activateIgnoringOtherApps:YES];
}

void CocoaApplication::terminate()
{
    [NSApp terminate:nil];
}

std::string supportFile(const std::string& name)
{
    @autoreleasepool {
        NSArray* folders =
            NSSearchPathForDirectoriesInDomains(NSApplicationSupportDirectory, NSUserDomainMask, YES);
        NSString* folder = [folders objectAtIndex:0];  // the user domain has one
        return toString(folder) + "/" SONVARA_IDENTIFIER "/" + name;
    }
}

}  // namespace sonvara
