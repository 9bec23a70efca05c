#import "platform/macos/windows/CocoaStyle.h"

#import "platform/macos/system/Strings.h"

namespace sonvara {

namespace {

NSFont* textStyle(NSString* style)
{
    return [NSFont preferredFontForTextStyle:style options:[NSDictionary dictionary]];
}

}  // namespace

NSFont* fontFor(FontRole role)
{
    switch (role) {
    case FontRole::headline: return textStyle(NSFontTextStyleHeadline);
    case FontRole::caption: return textStyle(NSFontTextStyleCaption1);
    case FontRole::captionMonospaced:
        return [NSFont monospacedSystemFontOfSize:[fontFor(FontRole::caption) pointSize]
                                           weight:NSFontWeightRegular];
    case FontRole::smallMenu: return [NSFont menuFontOfSize:[NSFont smallSystemFontSize]];
    case FontRole::body: break;
    }
    return [NSFont systemFontOfSize:[NSFont systemFontSize]];
}

NSColor* colorFor(ColorRole role)
{
    switch (role) {
    case ColorRole::secondaryLabel: return [NSColor secondaryLabelColor];
    case ColorRole::systemGreen: return [NSColor systemGreenColor];
    case ColorRole::systemOrange: return [NSColor systemOrangeColor];
    case ColorRole::label: break;
    }
    return [NSColor labelColor];
}

NSAttributedString* attributed(const StyledText& text)
{
    NSDictionary* attributes =
        @{NSFontAttributeName : fontFor(text.font), NSForegroundColorAttributeName : colorFor(text.color)};
    return [[[NSAttributedString alloc] initWithString:toNSString(text.text)
                                            attributes:attributes] autorelease];
}

NSImage* imageFor(const Symbol& symbol)
{
    NSString* description =
        symbol.accessibilityDescription.empty() ? nil : toNSString(symbol.accessibilityDescription);
    return [NSImage imageWithSystemSymbolName:toNSString(symbol.name) accessibilityDescription:description];
}

}  // namespace sonvara
