#include "Appearance.h"

#import <AppKit/AppKit.h>

namespace sonvara {

void useLightAppearance()
{
    NSAppearance* light = [NSAppearance appearanceNamed:NSAppearanceNameAqua];
    [NSApp setAppearance:light];
    // For what is drawn outside of any view. Its successor takes a block, which this project does without.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
    [NSAppearance setCurrentAppearance:light];
#pragma clang diagnostic pop
}

}  // namespace sonvara
