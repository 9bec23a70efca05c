// A window with the sample form, drawn by this platform's renderer.
#pragma once

#include "windows/Probe.h"
#include "windows/SampleForm.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {

using probe::ButtonState;
using Texts = std::vector<std::string>;

/// Holds the window, and drops it when it closes.
struct Owner final : WindowDelegate {
    std::shared_ptr<Window> window;
    int closings = 0;

    void windowWillClose(Window& closing) override
    {
        EXPECT_EQ(&closing, window.get());
        ++closings;
        window = nullptr;
    }
};

class WindowFixture : public testing::Test {
protected:
    static constexpr const char* title = "A form";
    static constexpr const char* sheetPlace = "A form/sheet";
    static constexpr const char* switchTitle = "Switch R&D on";

    WindowFixture()
    {
        WindowSetup setup;
        setup.title = title;
        setup.contentWidth = 420;
        setup.contentHeight = 360;
        setup.isClosable = true;
        setup.isMiniaturizable = true;
        setup.isCentered = true;
        setup.content = sample_.form();
        content_ = setup.content;
        owner_->window = windows_->make(std::move(setup));
        owner_->window->setDelegate(owner_);
    }

    ~WindowFixture() override
    {
        owner_->window = nullptr;
        EXPECT_TRUE(formGoes());
    }

    void show() { owner_->window->makeKeyAndOrderFront(); }

    void showSheet()
    {
        show();
        sample_.showSheet(true);
        ASSERT_TRUE(probe::isShown(sheetPlace));
    }

    void addRows(int count)
    {
        for (int i = 0; i < count; ++i) addRow("message " + std::to_string(i));
    }

    /// The newest stands first.
    void addRow(const std::string& message)
    {
        const auto id = std::to_string(++lastId_);
        sample_.rows.insert(sample_.rows.begin(), SampleForm::row(id, message));
        sample_.logChanged.call();
    }

    /// Whether the renderer lets the form go.
    bool formGoes()
    {
        return probe::runUntil([this] { return content_.expired(); });
    }

    SampleForm sample_;
    std::unique_ptr<Windows> windows_ = probe::makeWindows();
    std::weak_ptr<const Form> content_;
    std::shared_ptr<Owner> owner_ = std::make_shared<Owner>();

private:
    int lastId_ = 0;
};

}  // namespace sonvara::test
