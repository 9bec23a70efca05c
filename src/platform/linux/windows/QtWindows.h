// Native windows that host a form.
#pragma once

#include "ports/Windows.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>

namespace sonvara {

/// The widget of a window; it deletes itself after it was closed.
class FormWindow final : public QMainWindow {
    Q_OBJECT

public:
    explicit FormWindow(const WindowSetup& setup);

    /// Called once, when the window closes.
    std::function<void()> closing;

protected:
    void closeEvent(QCloseEvent* event) override;
};

/// A window that was closed stays closed.
class QtWindow final : public Window {
public:
    explicit QtWindow(const WindowSetup& setup);
    ~QtWindow() override;

    [[nodiscard]] bool isVisible() const override;
    void makeKeyAndOrderFront() override;
    void setDelegate(std::weak_ptr<WindowDelegate> delegate) override { delegate_ = std::move(delegate); }

private:
    void willClose();

    QPointer<FormWindow> widget_;
    bool isCentered_;
    std::weak_ptr<WindowDelegate> delegate_;
};

class QtWindows final : public Windows {
public:
    [[nodiscard]] std::shared_ptr<Window> make(WindowSetup setup) override;
};

}  // namespace sonvara
