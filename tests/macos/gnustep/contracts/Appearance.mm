// The system's colours in a light and in a dark appearance.
#import <AppleAdditions.h>

#include <cstdlib>
#include <string_view>

namespace {

NSAppearance* chosen = nil;  // by the program, for all that it draws

/// That of the user, when the program has chosen none.
bool isDark()
{
    if (chosen != nil) return [[chosen name] isEqualToString:NSAppearanceNameDarkAqua];
    const char* users = std::getenv("SONVARA_APPEARANCE");
    return users != nullptr && std::string_view(users) == "dark";
}

}  // namespace

@implementation NSAppearance (AppleAdditions)

+ (void)setCurrentAppearance:(NSAppearance*)appearance
{
    [appearance retain];
    [chosen release];
    chosen = appearance;
}

@end

@implementation NSApplication (AppleAdditions)

- (void)setAppearance:(NSAppearance*)appearance
{
    (void)appearance;  // is for views, of which the tests look at none
}

@end

@implementation NSColor (AppleAdditions)

+ (NSColor*)labelColor
{
    return isDark() ? [NSColor whiteColor] : [NSColor blackColor];
}

@end
