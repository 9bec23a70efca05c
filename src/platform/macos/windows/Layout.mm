#import "platform/macos/windows/Layout.h"

#import "platform/macos/system/Strings.h"
#import "platform/macos/windows/CocoaStyle.h"

#include <cmath>

@implementation SNVFlippedView

- (BOOL)isFlipped
{
    return YES;
}

@end

namespace sonvara {

namespace {

// What a text field keeps free at the left and right of its text.
constexpr double textFieldInset = 4;

NSSize measure(const StyledText& text, double width)
{
    return [attributed(text) boundingRectWithSize:NSMakeSize(width, CGFLOAT_MAX)
                                          options:NSStringDrawingUsesLineFragmentOrigin]
        .size;
}

}  // namespace

ObjcPtr<NSTextField> makeLabel(const StyledText& text)
{
    auto label = ObjcPtr<NSTextField>::adopt([[NSTextField alloc] initWithFrame:NSZeroRect]);
    [label.get() setStringValue:toNSString(text.text)];
    [label.get() setFont:fontFor(text.font)];
    [label.get() setTextColor:colorFor(text.color)];
    [label.get() setBezeled:NO];
    [label.get() setBordered:NO];
    [label.get() setDrawsBackground:NO];
    [label.get() setEditable:NO];
    [label.get() setSelectable:NO];
    [[label.get() cell] setWraps:YES];
    return label;
}

double wrappedHeight(const StyledText& text, double width)
{
    return std::ceil(measure(text, width - textFieldInset).height);
}

double lineWidth(const StyledText& text)
{
    return std::ceil(measure(text, CGFLOAT_MAX).width) + textFieldInset;
}

ObjcPtr<NSScrollView> makeScrollView(NSView* content, NSRect frame)
{
    auto scroll = ObjcPtr<NSScrollView>::adopt([[NSScrollView alloc] initWithFrame:frame]);
    [scroll.get() setBorderType:NSNoBorder];
    [scroll.get() setDrawsBackground:NO];
    [scroll.get() setDocumentView:content];
    return scroll;
}

ObjcPtr<NSButton> makePushButton()
{
    auto button = ObjcPtr<NSButton>::adopt([[NSButton alloc] initWithFrame:NSZeroRect]);
    [button.get() setButtonType:NSButtonTypeMomentaryPushIn];
    [button.get() setBezelStyle:NSBezelStyleRounded];
    return button;
}

void showPushButton(NSButton* button, const PushButton& content)
{
    [button setTitle:toNSString(content.title())];
    [button setEnabled:(content.isEnabled() ? YES : NO)];
}

double pushButtonWidth(NSButton* button)
{
    constexpr double smallest = 68;  // narrower ones look cramped beside their neighbours
    return std::fmax(smallest, std::ceil([[button cell] cellSize].width));
}

}  // namespace sonvara
