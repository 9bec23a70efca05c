// A status bar, windows and a picture maker that remember what they were told.
#pragma once

#include "fakes/VirtualTime.h"
#include "ports/Image.h"
#include "ports/StatusBar.h"
#include "ports/Windows.h"
#include "support/Callbacks.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {

class FakeImage final : public Image {
public:
    explicit FakeImage(Drawing from) : drawing(std::move(from)) {}
    Drawing drawing;
};

class FakeImageRenderer final : public ImageRenderer {
public:
    explicit FakeImageRenderer(VirtualTime& time) : time_(time) {}
    std::shared_ptr<const Image> render(const Drawing& drawing) override
    {
        EXPECT_FALSE(time_.isMainThread()) << "icons are rendered off the main thread";
        rendered.push_back(drawing);
        time_.sleepWorker(takes);
        return fails ? nullptr : std::make_shared<FakeImage>(drawing);
    }

    std::vector<Drawing> rendered;
    VirtualTime::Duration takes{0};
    bool fails = false;

private:
    VirtualTime& time_;
};

class FakeStatusMenu final : public StatusMenu {
public:
    explicit FakeStatusMenu(VirtualTime& time) : time_(time) {}
    void setItems(std::vector<MenuItem> newItems) override
    {
        EXPECT_TRUE(time_.isMainThread());
        items = std::move(newItems);
        ++rebuilds;
    }
    Subscription onWillOpen(std::function<void()> handler) override
    {
        return willOpen_.add(std::move(handler));
    }

    /// Test: the user opens the menu.
    void open() { willOpen_.call(); }
    /// Test: the user chooses the enabled item with this title.
    void choose(const std::string& title)
    {
        for (const auto& item : std::vector(items)) {
            if (item.title != title) continue;
            ASSERT_TRUE(item.isEnabled);
            item.action();
            return;
        }
        FAIL() << "no item " << title;
    }

    std::vector<MenuItem> items;
    int rebuilds = 0;

private:
    VirtualTime& time_;
    Callbacks<> willOpen_;
};

class FakeStatusButton final : public StatusButton {
public:
    explicit FakeStatusButton(VirtualTime& time) : time_(time) {}
    void setImage(std::shared_ptr<const Image> newImage) override
    {
        EXPECT_TRUE(time_.isMainThread());
        EXPECT_NE(newImage, nullptr);
        image = std::dynamic_pointer_cast<const FakeImage>(newImage);
        symbol.reset();
        ++changes;
    }
    void setSymbol(const Symbol& newSymbol) override
    {
        EXPECT_TRUE(time_.isMainThread());
        symbol = newSymbol;
        image.reset();
        ++changes;
    }

    std::shared_ptr<const FakeImage> image;
    std::optional<Symbol> symbol;
    int changes = 0;

private:
    VirtualTime& time_;
};

/// What the status bar was asked for; outlives the items, as the test does.
struct StatusBarState {
    VirtualTime& time;
    FakeStatusButton button{time};
    bool givesButton = true;
    FakeStatusMenu* menu = nullptr;          ///< the latest menu made
    FakeStatusMenu* attachedMenu = nullptr;  ///< the one that the item opens
    bool isVisible = false;
    int itemsMade = 0;
};

class FakeStatusBar final : public StatusBar {
public:
    explicit FakeStatusBar(VirtualTime& time) : state{time} {}
    std::unique_ptr<StatusItem> makeSquareItem() override
    {
        ++state.itemsMade;
        return std::make_unique<Item>(state);
    }
    std::unique_ptr<StatusMenu> makeMenu() override
    {
        auto menu = std::make_unique<FakeStatusMenu>(state.time);
        state.menu = menu.get();
        return menu;
    }

    StatusBarState state;

private:
    class Item final : public StatusItem {
    public:
        explicit Item(StatusBarState& state) : state_(state) {}
        StatusButton* button() override { return state_.givesButton ? &state_.button : nullptr; }
        void setVisible(bool visible) override { state_.isVisible = visible; }
        void setMenu(StatusMenu& menu) override
        {
            state_.attachedMenu = dynamic_cast<FakeStatusMenu*>(&menu);
        }

    private:
        StatusBarState& state_;
    };
};

class FakeWindow final : public Window {
public:
    explicit FakeWindow(WindowSetup from) : setup(std::move(from)) {}
    [[nodiscard]] bool isVisible() const override { return isShown && !isMiniaturized; }
    void makeKeyAndOrderFront() override
    {
        isShown = true;
        ++broughtToFront;
        if (onFront) onFront(*this);
    }
    void setDelegate(std::weak_ptr<WindowDelegate> newDelegate) override
    {
        delegate = std::move(newDelegate);
    }

    /// Test: the user closes the window.
    void close()
    {
        isShown = false;
        if (const auto hears = delegate.lock()) hears->windowWillClose(*this);
    }

    WindowSetup setup;
    std::weak_ptr<WindowDelegate> delegate;
    bool isShown = false;
    bool isMiniaturized = false;
    int broughtToFront = 0;
    std::function<void(const FakeWindow&)> onFront;  ///< the test looks on
};

class FakeWindows final : public Windows {
public:
    std::shared_ptr<Window> make(WindowSetup setup) override
    {
        auto window = std::make_shared<FakeWindow>(std::move(setup));
        window->onFront = onFront;
        made.push_back(window);
        return window;
    }

    /// Windows that exist, in order of making; the others are expired.
    std::vector<std::weak_ptr<FakeWindow>> made;
    std::function<void(const FakeWindow&)> onFront;  ///< given to each
    [[nodiscard]] std::shared_ptr<FakeWindow> latest() const
    {
        return made.empty() ? nullptr : made.back().lock();
    }
};

}  // namespace sonvara::test
