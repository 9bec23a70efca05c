// Included before every Objective-C++ source: what Apple's frameworks declare and GNUstep's do not.
#pragma once

#import <AppKit/AppKit.h>

// Newer names of old constants. As macros, for a newer GNUstep declares some of them itself.
#define NSLineCapStyleRound NSRoundLineCapStyle
#define NSBitmapImageFileTypePNG NSPNGFileType
#define NSButtonTypeSwitch NSSwitchButton
#define NSButtonTypeMomentaryPushIn NSMomentaryPushInButton
#define NSBezelStyleRounded NSRoundedBezelStyle
#define NSEventMaskAny NSAnyEventMask
#define NSEventTypeKeyDown NSKeyDown
#define NSEventModifierFlagCommand NSCommandKeyMask

extern NSString* const NSFontTextStyleHeadline;
extern NSString* const NSFontTextStyleCaption1;

@interface NSFont (AppleAdditions)
+ (NSFont*)preferredFontForTextStyle:(NSString*)style options:(NSDictionary*)options;
+ (NSFont*)monospacedSystemFontOfSize:(CGFloat)size weight:(CGFloat)weight;
@end

/// Known to the stand-ins as a size only.
@interface NSImageSymbolConfiguration : NSObject {
    CGFloat pointSize_;
}
+ (instancetype)configurationWithPointSize:(CGFloat)size weight:(CGFloat)weight;
- (CGFloat)pointSize;
@end

@interface NSImage (AppleAdditions)
+ (NSImage*)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description;
- (NSString*)accessibilityDescription;
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
- (void)setTemplate:(BOOL)isTemplate;
- (BOOL)isTemplate;
@end

@interface NSImageView (AppleAdditions)
- (void)setContentTintColor:(NSColor*)color;
@end

@interface NSView (AppleAdditions)
- (void)setAccessibilityLabel:(NSString*)label;
@end

@interface NSMenu (AppleAdditions)
- (void)removeAllItems;
@end

@interface NSPasteboard (AppleAdditions)
- (NSInteger)clearContents;
@end

@interface NSApplication (AppleAdditions)
- (void)setAppearance:(NSAppearance*)appearance;
@end

@interface NSWorkspace (AppleAdditions)
- (NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)identifier;
@end

/// Without blocks, so that no completion handler can be given.
@interface NSWindow (AppleAdditions)
- (void)setPreventsApplicationTerminationWhenModal:(BOOL)prevents;
- (BOOL)preventsApplicationTerminationWhenModal;
- (void)beginSheet:(NSWindow*)sheet completionHandler:(std::nullptr_t)handler;
- (void)endSheet:(NSWindow*)sheet;
- (NSWindow*)attachedSheet;
@end

@interface NSStatusBarButton (AppleAdditions)
- (void)setImageScaling:(NSImageScaling)scaling;
@end

@interface NSStatusItem (AppleAdditions)
- (NSStatusBarButton*)button;
- (void)setVisible:(BOOL)visible;
- (BOOL)isVisible;
@end

struct AEDesc;

@interface NSAppleEventDescriptor (AppleAdditions)
+ (NSAppleEventDescriptor*)descriptorWithBundleIdentifier:(NSString*)identifier;
- (const AEDesc*)aeDesc;
- (NSString*)stringValue;
- (std::int32_t)int32Value;
@end

@interface NSAppleScript (AppleAdditions)
- (instancetype)initWithSource:(NSString*)source;
- (NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary**)error;
@end
