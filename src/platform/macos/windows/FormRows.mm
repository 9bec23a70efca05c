#import "platform/macos/windows/FormRows.h"

#import "platform/macos/system/Strings.h"
#import "platform/macos/windows/ActionTarget.h"
#import "platform/macos/windows/Layout.h"

namespace sonvara {

namespace {

constexpr double toggleHeight = 20;
constexpr double controlHeight = 26;

class ToggleRow final : public FormRowView {
public:
    ToggleRow(const Toggle& toggle, const RowPlace& place)
        : FormRowView(toggleHeight),
          isOn_(toggle.isOn),
          button_(ObjcPtr<NSButton>::adopt(
              [[NSButton alloc] initWithFrame:NSMakeRect(place.x, place.y, place.width, toggleHeight)])),
          action_(button_.get(), [this] {
              isOn_.set([button_.get() state] == NSControlStateValueOn);
              refresh();
          })
    {
        [button_.get() setButtonType:NSButtonTypeSwitch];
        [button_.get() setTitle:toNSString(toggle.title)];
        [place.parent addSubview:button_.get()];
    }

    void refresh() override
    {
        [button_.get() setState:(isOn_.get() ? NSControlStateValueOn : NSControlStateValueOff)];
    }

private:
    Binding<bool> isOn_;
    ObjcPtr<NSButton> button_;
    ControlAction action_;
};

class PickerRow final : public FormRowView {
public:
    PickerRow(const Picker& picker, const RowPlace& place)
        : FormRowView(controlHeight),
          picker_(picker),
          popUp_(ObjcPtr<NSPopUpButton>::adopt([[NSPopUpButton alloc] initWithFrame:frame(picker, place)
                                                                          pullsDown:NO])),
          action_(popUp_.get(), [this] {
              choose([popUp_.get() indexOfSelectedItem]);
              refresh();
          })
    {
        for (const Picker::Option& option : picker.options)
            [popUp_.get() addItemWithTitle:toNSString(option.label)];
        [popUp_.get() setAccessibilityLabel:toNSString(picker.title)];
        const auto label = makeLabel(titleOf(picker));
        [label.get() setFrame:NSMakeRect(place.x, place.y + 4, titleWidth(picker), controlHeight - 4)];
        [place.parent addSubview:label.get()];
        [place.parent addSubview:popUp_.get()];
    }

    void refresh() override
    {
        NSInteger index = -1;  // no option
        const std::string tag = picker_.selection.get();
        for (std::size_t i = 0; i < picker_.options.size(); ++i) {
            if (picker_.options[i].tag == tag) index = static_cast<NSInteger>(i);
        }
        [popUp_.get() selectItemAtIndex:index];
        [popUp_.get() setEnabled:(picker_.isEnabled() ? YES : NO)];
    }

private:
    void choose(NSInteger index)
    {
        if (index >= 0) picker_.selection.set(picker_.options.at(static_cast<std::size_t>(index)).tag);
    }

    static StyledText titleOf(const Picker& picker)
    {
        return {picker.title, FontRole::body, ColorRole::label};
    }
    static double titleWidth(const Picker& picker) { return lineWidth(titleOf(picker)); }

    static NSRect frame(const Picker& picker, const RowPlace& place)
    {
        constexpr double gap = 8;
        const double left = titleWidth(picker) + gap;
        return NSMakeRect(place.x + left, place.y, place.width - left, controlHeight);
    }

    Picker picker_;
    ObjcPtr<NSPopUpButton> popUp_;
    ControlAction action_;
};

class ButtonRow final : public FormRowView {
public:
    ButtonRow(const PushButton& button, const RowPlace& place)
        : FormRowView(controlHeight),
          content_(button),
          button_(makePushButton()),
          action_(button_.get(), button.action)
    {
        [button_.get() setFrame:NSMakeRect(place.x, place.y, 0, controlHeight)];
        [place.parent addSubview:button_.get()];
    }

    void refresh() override
    {
        showPushButton(button_.get(), content_);
        NSRect frame = [button_.get() frame];
        frame.size.width = pushButtonWidth(button_.get());
        [button_.get() setFrame:frame];
        [[button_.get() superview] setNeedsDisplay:YES];  // what a narrower one uncovers
    }

private:
    PushButton content_;
    ObjcPtr<NSButton> button_;
    ControlAction action_;
};

class TextRow final : public FormRowView {
public:
    TextRow(const StyledText& text, const RowPlace& place) : FormRowView(wrappedHeight(text, place.width))
    {
        const auto label = makeLabel(text);
        [label.get() setFrame:NSMakeRect(place.x, place.y, place.width, height())];
        [place.parent addSubview:label.get()];
    }

    void refresh() override {}  // its text never changes
};

}  // namespace

std::unique_ptr<FormRowView> makeRow(const FormRow& row, const RowPlace& place)
{
    if (const auto* toggle = std::get_if<Toggle>(&row)) return std::make_unique<ToggleRow>(*toggle, place);
    if (const auto* picker = std::get_if<Picker>(&row)) return std::make_unique<PickerRow>(*picker, place);
    if (const auto* button = std::get_if<PushButton>(&row))
        return std::make_unique<ButtonRow>(*button, place);
    return std::make_unique<TextRow>(std::get<StyledText>(row), place);
}

}  // namespace sonvara
