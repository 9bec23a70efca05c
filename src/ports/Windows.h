// Port: windows that host a form.
#pragma once

#include "ports/Form.h"

#include <memory>
#include <string>

namespace sonvara {

/// How to make a window.
struct WindowSetup {
    std::string title;
    double contentWidth = 0;  ///< initial size of the content, in points
    double contentHeight = 0;
    bool isClosable = false;
    bool isMiniaturizable = false;
    bool isResizable = false;
    bool isCentered = false;
    std::shared_ptr<const Form> content;  ///< held until the window closes
};

class Window;

/// Hears what happens to a window.
class WindowDelegate {
public:
    virtual ~WindowDelegate() = default;

    /// Main thread: `window` is about to close. The last reference to it may be dropped inside the call.
    virtual void windowWillClose(Window& window) = 0;
};

/// A window. Main thread only. Closing it leaves the object alive; dropping the object closes it
/// without telling the delegate.
class Window {
public:
    virtual ~Window() = default;

    /// Whether the user can see the window: neither closed nor miniaturised.
    [[nodiscard]] virtual bool isVisible() const = 0;
    /// Shows the window, in front of the application's others and with the keyboard.
    virtual void makeKeyAndOrderFront() = 0;
    /// Sets who hears of the window; held weakly.
    virtual void setDelegate(std::weak_ptr<WindowDelegate> delegate) = 0;
};

/// Makes windows. Main thread only.
class Windows {
public:
    virtual ~Windows() = default;

    /// Makes a window that is not shown yet.
    [[nodiscard]] virtual std::shared_ptr<Window> make(WindowSetup setup) = 0;
};

}  // namespace sonvara
