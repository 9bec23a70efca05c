#include "platform/macos/windows/CocoaWindows.h"

#import "platform/macos/system/Strings.h"
#import "platform/macos/windows/FormView.h"

#include <algorithm>
#include <utility>

namespace sonvara {

namespace {
class CocoaWindow;
}

}  // namespace sonvara

@interface SNVWindowDelegate : NSObject <NSWindowDelegate> {
    sonvara::CocoaWindow* window_;
}
- (instancetype)initWithWindow:(sonvara::CocoaWindow*)window;
@end

namespace sonvara {

namespace {

NSWindowStyleMask styleMask(const WindowSetup& setup)
{
    NSWindowStyleMask mask = NSWindowStyleMaskTitled;
    if (setup.isClosable) mask |= NSWindowStyleMaskClosable;
    if (setup.isMiniaturizable) mask |= NSWindowStyleMaskMiniaturizable;
    if (setup.isResizable) mask |= NSWindowStyleMaskResizable;
    return mask;
}

NSRect contentRect(const WindowSetup& setup)
{
    return NSMakeRect(0, 0, std::max(setup.contentWidth, setup.content->width),
                      std::max(setup.contentHeight, setup.content->height));
}

class CocoaWindow final : public Window, public std::enable_shared_from_this<CocoaWindow> {
public:
    explicit CocoaWindow(const WindowSetup& setup)
        : window_(ObjcPtr<NSWindow>::adopt([[NSWindow alloc] initWithContentRect:contentRect(setup)
                                                                       styleMask:styleMask(setup)
                                                                         backing:NSBackingStoreBuffered
                                                                           defer:YES])),
          windowDelegate_(ObjcPtr<SNVWindowDelegate>::adopt([[SNVWindowDelegate alloc] initWithWindow:this])),
          form_(std::make_unique<FormView>(setup.content, window_.get()))
    {
        [window_.get() setReleasedWhenClosed:NO];
        [window_.get() setTitle:toNSString(setup.title)];
        [window_.get() setContentView:form_->view()];
        [window_.get() setDelegate:windowDelegate_.get()];
        if (setup.isCentered) [window_.get() center];
    }

    ~CocoaWindow() override
    {
        [window_.get() setDelegate:nil];
        form_ = nullptr;
        [window_.get() close];
    }
    CocoaWindow(const CocoaWindow&) = delete;
    CocoaWindow& operator=(const CocoaWindow&) = delete;

    bool isVisible() const override { return [window_.get() isVisible] && ![window_.get() isMiniaturized]; }

    void makeKeyAndOrderFront() override
    {
        const bool appears = !isVisible();
        [window_.get() makeKeyAndOrderFront:nil];
        if (appears && form_ != nullptr) form_->appear();
    }

    void setDelegate(std::weak_ptr<WindowDelegate> delegate) override { delegate_ = std::move(delegate); }

    void willClose()
    {
        const auto self = shared_from_this();  // the delegate may drop the last reference
        [[window_.get() retain] autorelease];  // the system goes on with the window after this
        if (const auto delegate = delegate_.lock()) delegate->windowWillClose(*this);
        form_ = nullptr;
    }

private:
    ObjcPtr<NSWindow> window_;
    ObjcPtr<SNVWindowDelegate> windowDelegate_;  // the window holds it weakly
    std::unique_ptr<FormView> form_;
    std::weak_ptr<WindowDelegate> delegate_;
};

}  // namespace

}  // namespace sonvara

@implementation SNVWindowDelegate

- (instancetype)initWithWindow:(sonvara::CocoaWindow*)window
{
    self = [super init];
    if (self != nil) window_ = window;
    return self;
}

- (void)windowWillClose:(NSNotification*)notification
{
    (void)notification;
    window_->willClose();
}

@end

namespace sonvara {

std::shared_ptr<Window> CocoaWindows::make(WindowSetup setup)
{
    return std::make_shared<CocoaWindow>(setup);
}

}  // namespace sonvara
