// A menu of the system. For Objective-C++ sources only.
#pragma once

#import "platform/macos/system/ObjcPtr.h"
#include "ports/StatusBar.h"
#include "support/Callbacks.h"

#import <AppKit/AppKit.h>

@class SNVMenuObserver;

namespace sonvara {

class CocoaMenu final : public StatusMenu {
public:
    CocoaMenu();
    ~CocoaMenu() override;

    void setItems(std::vector<MenuItem> items) override;
    [[nodiscard]] Subscription onWillOpen(std::function<void()> handler) override;

    [[nodiscard]] NSMenu* get() const { return menu_.get(); }

private:
    ObjcPtr<NSMenu> menu_;
    std::shared_ptr<Callbacks<>> willOpen_ = std::make_shared<Callbacks<>>();
    ObjcPtr<SNVMenuObserver> observer_;
};

}  // namespace sonvara
