// A status bar of one strip window for each item, at the upper right of the screen.
#include "StandIns.h"

#import <AppleAdditions.h>

using sonvara::test::standins::violated;

namespace {

constexpr CGFloat thickness = 24;

}  // namespace

/// Opens its menu under the mouse, as a status item with a menu does. Is greyed until somebody says otherwise, so that it is
/// seen whether somebody does.
@interface SNVStatusBarButton : NSStatusBarButton {
    BOOL isShown_;
}
- (void)show;
- (void)beginGrey;
@end

@implementation SNVStatusBarButton

- (void)show
{
    isShown_ = YES;
}

- (void)beginGrey
{
    [super setAppearsDisabled:YES];
}

- (void)setAppearsDisabled:(BOOL)disabled
{
    if (!isShown_) violated("the button is set up before its item is made visible");
    [super setAppearsDisabled:disabled];
}

- (void)mouseDown:(NSEvent*)event
{
    NSMenu* menu = [self menu];
    if (menu != nil) [NSMenu popUpContextMenu:menu withEvent:event forView:self];
}

@end

@interface SNVStatusItem : NSStatusItem {
    NSWindow* strip_;
    SNVStatusBarButton* button_;
}
@end

@implementation SNVStatusItem

- (instancetype)init
{
    self = [super init];
    if (self == nil) return nil;
    if (![NSThread isMainThread]) violated("a status item is made off the main thread");
    const NSSize screen = [[NSScreen mainScreen] frame].size;
    const NSRect frame =
        NSMakeRect(screen.width - 4 * thickness, screen.height - thickness, thickness, thickness);
    strip_ = [[NSWindow alloc] initWithContentRect:frame
                                         styleMask:NSWindowStyleMaskBorderless
                                           backing:NSBackingStoreBuffered
                                             defer:NO];
    [strip_ setReleasedWhenClosed:NO];
    [strip_ setTitle:@"status item"];
    button_ = [[SNVStatusBarButton alloc] initWithFrame:NSMakeRect(0, 0, thickness, thickness)];
    [button_ setBordered:NO];
    [button_ beginGrey];
    [[strip_ contentView] addSubview:button_];
    [strip_ orderFront:nil];
    return self;
}

- (void)dealloc
{
    [strip_ close];
    [strip_ release];
    [button_ release];
    [super dealloc];
}

- (NSStatusBarButton*)button
{
    return button_;
}

- (void)setMenu:(NSMenu*)menu
{
    [button_ setMenu:menu];
}

- (NSMenu*)menu
{
    return [button_ menu];
}

- (void)setVisible:(BOOL)visible
{
    if (visible) {
        [button_ show];
        [strip_ orderFront:nil];
    } else {
        [strip_ orderOut:nil];
    }
}

- (BOOL)isVisible
{
    return [strip_ isVisible];
}

@end

/// GNUstep's item keeps no attributed title.
@interface SNVMenuItem : NSMenuItem {
    NSAttributedString* styled_;
}
@end

@implementation SNVMenuItem

- (void)dealloc
{
    [styled_ release];
    [super dealloc];
}

- (void)setAttributedTitle:(NSAttributedString*)title
{
    [styled_ release];
    styled_ = [title copy];
    [self setTitle:[title string]];
}

- (NSAttributedString*)attributedTitle
{
    return styled_;
}

@end

@implementation NSMenuItem (AppleAdditions)

+ (id)allocWithZone:(NSZone*)zone
{
    return NSAllocateObject(self == [NSMenuItem class] ? [SNVMenuItem class] : self, 0, zone);
}

@end

@implementation NSStatusBar (AppleAdditions)

+ (NSStatusBar*)systemStatusBar
{
    static NSStatusBar* bar = [[NSStatusBar alloc] init];
    return bar;
}

- (NSStatusItem*)statusItemWithLength:(CGFloat)length
{
    if (length != NSSquareStatusItemLength) violated("the status item is not square");
    return [[[SNVStatusItem alloc] init] autorelease];
}

- (void)removeStatusItem:(NSStatusItem*)item
{
    [item setVisible:NO];
}

@end

@implementation NSStatusItem (AppleAdditions)

- (NSStatusBarButton*)button
{
    return nil;
}

- (void)setVisible:(BOOL)visible
{
    (void)visible;
}

- (BOOL)isVisible
{
    return NO;
}

@end
