// What include/AppleAdditions.h declares of AppKit, but for the status bar.
#include "StandIns.h"

#import <AppleAdditions.h>

#include <mutex>
#include <set>

using sonvara::test::standins::violated;

namespace {

std::mutex mutex;
std::set<const void*> templates;
std::set<const void*> letsQuit;  // windows that do not keep the application from terminating

}  // namespace

NSString* const NSFontTextStyleHeadline = @"headline";
NSString* const NSFontTextStyleCaption1 = @"caption1";

@implementation NSFont (AppleAdditions)

+ (NSFont*)preferredFontForTextStyle:(NSString*)style options:(NSDictionary*)options
{
    (void)options;
    if ([style isEqualToString:NSFontTextStyleCaption1]) return [self systemFontOfSize:10];
    return [self boldSystemFontOfSize:[self systemFontSize]];
}

+ (NSFont*)monospacedSystemFontOfSize:(CGFloat)size weight:(CGFloat)weight
{
    (void)weight;
    return [self userFixedPitchFontOfSize:size];
}

@end

@implementation NSImageSymbolConfiguration

+ (instancetype)configurationWithPointSize:(CGFloat)size weight:(CGFloat)weight
{
    (void)weight;
    NSImageSymbolConfiguration* configuration = [[[self alloc] init] autorelease];
    configuration->pointSize_ = size;
    return configuration;
}

- (CGFloat)pointSize
{
    return pointSize_;
}

@end

/// A picture of the system's set: a dot that knows its name.
@interface SNVSymbolImage : NSImage {
    NSString* symbol_;
}
@end

@implementation SNVSymbolImage

- (instancetype)initWithSymbol:(NSString*)symbol
{
    self = [super initWithSize:NSMakeSize(14, 14)];
    if (self == nil) return nil;
    symbol_ = [symbol copy];
    [self lockFocus];
    [[NSColor grayColor] set];
    [[NSBezierPath bezierPathWithOvalInRect:NSMakeRect(3, 3, 8, 8)] fill];
    [self unlockFocus];
    return self;
}

- (void)dealloc
{
    [symbol_ release];
    [super dealloc];
}

- (NSString*)name
{
    return symbol_;
}

@end

@implementation NSImage (AppleAdditions)

+ (NSImage*)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description
{
    if (description != nil && [description length] == 0) violated("a symbol has an empty description");
    return [[[SNVSymbolImage alloc] initWithSymbol:name] autorelease];
}

- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration
{
    if ([configuration pointSize] <= 0) violated("a symbol has no size");
    return self;
}

- (void)setTemplate:(BOOL)isTemplate
{
    const std::lock_guard lock(mutex);
    if (isTemplate) {
        templates.insert(self);
    } else {
        templates.erase(self);
    }
}

- (BOOL)isTemplate
{
    const std::lock_guard lock(mutex);
    return templates.contains(self);
}

@end

@implementation NSImageView (AppleAdditions)

- (void)setContentTintColor:(NSColor*)color
{
    if (color == nil) violated("a symbol has no colour");
}

@end

@implementation NSView (AppleAdditions)

- (void)setAccessibilityLabel:(NSString*)label
{
    if ([label length] == 0) violated("a control has no name");
}

@end

@implementation NSMenu (AppleAdditions)

- (void)removeAllItems
{
    while ([self numberOfItems] > 0) [self removeItemAtIndex:0];
}

@end

@implementation NSPasteboard (AppleAdditions)

- (NSInteger)clearContents
{
    return [self declareTypes:@[ NSPasteboardTypeString ] owner:nil];
}

@end

@implementation NSWindow (AppleAdditions)

- (void)setPreventsApplicationTerminationWhenModal:(BOOL)prevents
{
    const std::lock_guard lock(mutex);
    if (prevents) {
        letsQuit.erase(self);
    } else {
        letsQuit.insert(self);
    }
}

- (BOOL)preventsApplicationTerminationWhenModal
{
    const std::lock_guard lock(mutex);
    return letsQuit.contains(self) ? NO : YES;
}

- (void)beginSheet:(NSWindow*)sheet completionHandler:(std::nullptr_t)handler
{
    (void)handler;
    if ([self attachedSheet] != nil) violated("a window has two sheets");
    const NSRect over = [self frame];
    const NSSize size = [sheet frame].size;
    [sheet setFrameOrigin:NSMakePoint(NSMidX(over) - size.width / 2, NSMaxY(over) - 40 - size.height)];
    [self addChildWindow:sheet ordered:NSWindowAbove];
    [sheet makeKeyAndOrderFront:nil];
}

- (void)endSheet:(NSWindow*)sheet
{
    if ([self attachedSheet] != sheet) violated("a sheet ends that did not begin");
    [self removeChildWindow:sheet];
    [sheet orderOut:nil];
}

- (NSWindow*)attachedSheet
{
    return [[self childWindows] lastObject];
}

@end

@implementation NSStatusBarButton (AppleAdditions)

- (void)setImageScaling:(NSImageScaling)scaling
{
    [[self cell] setImageScaling:scaling];
}

@end
