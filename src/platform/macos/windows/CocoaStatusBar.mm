#include "platform/macos/windows/CocoaStatusBar.h"

#import "platform/macos/windows/CocoaMenu.h"
#import "platform/macos/windows/CocoaStyle.h"
#import "platform/macos/windows/NativeImage.h"

namespace sonvara {

namespace {

class CocoaStatusButton final : public StatusButton {
public:
    explicit CocoaStatusButton(NSStatusBarButton* button) : button_(ObjcPtr<NSStatusBarButton>::share(button))
    {}

    /// To be called once the item is visible.
    void setUp()
    {
        [button_.get() setImagePosition:NSImageOnly];
        [button_.get() setImageScaling:NSImageScaleProportionallyDown];
        [button_.get() setAppearsDisabled:NO];
    }

    void setImage(std::shared_ptr<const Image> image) override
    {
        [button_.get() setImage:nativeImage(image.get())];
    }

    void setSymbol(const Symbol& symbol) override { [button_.get() setImage:imageFor(symbol)]; }

private:
    ObjcPtr<NSStatusBarButton> button_;
};

class CocoaStatusItem final : public StatusItem {
public:
    CocoaStatusItem()
        : item_(ObjcPtr<NSStatusItem>::share(
              [[NSStatusBar systemStatusBar] statusItemWithLength:NSSquareStatusItemLength]))
    {
        NSStatusBarButton* button = [item_.get() button];
        if (button != nil) button_ = std::make_unique<CocoaStatusButton>(button);
    }

    ~CocoaStatusItem() override { [[NSStatusBar systemStatusBar] removeStatusItem:item_.get()]; }
    CocoaStatusItem(const CocoaStatusItem&) = delete;
    CocoaStatusItem& operator=(const CocoaStatusItem&) = delete;

    StatusButton* button() override { return button_.get(); }

    void setVisible(bool visible) override
    {
        [item_.get() setVisible:(visible ? YES : NO)];
        if (visible && button_ != nullptr) button_->setUp();
    }

    void setMenu(StatusMenu& menu) override
    {
        [item_.get() setMenu:static_cast<CocoaMenu&>(menu).get()];  // every menu of this platform is one
    }

private:
    ObjcPtr<NSStatusItem> item_;
    std::unique_ptr<CocoaStatusButton> button_;
};

}  // namespace

std::unique_ptr<StatusItem> CocoaStatusBar::makeSquareItem()
{
    return std::make_unique<CocoaStatusItem>();
}

std::unique_ptr<StatusMenu> CocoaStatusBar::makeMenu()
{
    return std::make_unique<CocoaMenu>();
}

}  // namespace sonvara
