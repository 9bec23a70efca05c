// Of AppKit, what GNUstep has under another name or not at all.
#import <AppleAdditions.h>

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

@implementation NSStatusBarButton (AppleAdditions)

- (void)setImageScaling:(NSImageScaling)scaling
{
    [[self cell] setImageScaling:scaling];
}

@end
