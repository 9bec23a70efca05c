// A tray item of the whole status bar, with a host to be made by the test.
#pragma once

#include "FakeWatcher.h"
#include "helpers/EventLoop.h"
#include "platform/linux/style/QtImageRenderer.h"
#include "platform/linux/tray/QtStatusBar.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>

namespace sonvara::test {

inline Drawing disc(ColorRole role, bool isTemplate)
{
    return {18, 18, isTemplate, {FillOval{{2, 2, 14, 14}, {role, 1}}}};
}

class StatusItemTest : public testing::Test {
protected:
    void start()
    {
        bar = std::make_unique<QtStatusBar>([this] { isTrayMissing = true; }, std::chrono::milliseconds(50));
        menu = bar->makeMenu();
        item = bar->makeSquareItem();
        item->setMenu(*menu);
    }

    void show(ColorRole role, bool isTemplate)
    {
        item->button()->setImage(QtImageRenderer().render(disc(role, isTemplate)));
    }

    bool isRegistered(qsizetype times)
    {
        return eventually([&] { return watcher->items.size() == times; });
    }

    bool isTrayMissing = false;
    std::unique_ptr<FakeWatcher> watcher;
    std::unique_ptr<QtStatusBar> bar;
    std::unique_ptr<StatusMenu> menu;
    std::unique_ptr<StatusItem> item;
};

}  // namespace sonvara::test
