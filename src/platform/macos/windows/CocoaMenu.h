// A menu of the system. For Objective-C++ sources only.
#pragma once

#import "platform/macos/system/ObjcPtr.h"
#include "ports/StatusBar.h"

#import <AppKit/AppKit.h>

namespace sonvara {

class CocoaMenu final : public StatusMenu {
public:
    CocoaMenu();

    void setItems(std::vector<MenuItem> items) override;
    [[nodiscard]] Subscription onWillOpen(std::function<void()> handler) override;

    [[nodiscard]] NSMenu* get() const { return menu_.get(); }

private:
    ObjcPtr<NSMenu> menu_;
};

}  // namespace sonvara
