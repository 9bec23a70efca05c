// The system's symbols and other pictures, and what their users must say of them.
#include "StandIns.h"

#import <AppleAdditions.h>

#include <mutex>
#include <set>

using sonvara::test::standins::violated;

namespace {

std::mutex mutex;
std::set<const void*> templates;

}  // namespace

/// A picture of the system's set: a dot that knows its name and what is said of it.
@interface SNVSymbolImage : NSImage {
    NSString* symbol_;
    NSString* description_;
}
@end

@implementation SNVSymbolImage

- (instancetype)initWithSymbol:(NSString*)symbol description:(NSString*)description
{
    self = [super initWithSize:NSMakeSize(14, 14)];
    if (self == nil) return nil;
    symbol_ = [symbol copy];
    description_ = [description copy];
    [self lockFocus];
    [[NSColor grayColor] set];
    [[NSBezierPath bezierPathWithOvalInRect:NSMakeRect(3, 3, 8, 8)] fill];
    [self unlockFocus];
    return self;
}

- (void)dealloc
{
    [symbol_ release];
    [description_ release];
    [super dealloc];
}

- (NSString*)name
{
    return symbol_;
}

- (NSString*)accessibilityDescription
{
    return description_;
}

@end

@implementation NSImage (AppleAdditions)

+ (NSImage*)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description
{
    if (description != nil && [description length] == 0) violated("a symbol has an empty description");
    return [[[SNVSymbolImage alloc] initWithSymbol:name description:description] autorelease];
}

- (NSString*)accessibilityDescription
{
    return nil;
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
