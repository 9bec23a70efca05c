// Requests for an intro on a desktop of fakes.
#pragma once

#include "ai/AIDJ.h"
#include "fakes/FakeDesktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {

class AIDJTest : public testing::Test {
protected:
    using Entry = std::pair<std::string, DJLog::Level>;

    FakeDesktop desktop;
    DJLog* log = &DJLog::shared();
    std::shared_ptr<AIDJ> aiDJ = AIDJ::create(desktop.platform);
    std::vector<std::optional<std::string>> answers;

    AIDJTest()
    {
        desktop.files.executables = {"/usr/local/bin/claude", "/usr/local/bin/gemini"};
        desktop.launcher.behaviour.output = "Here comes Song A.\n";
    }
    ~AIDJTest() override { desktop.time.end(); }  // a request that is still blocked answers to this object

    void request()
    {
        aiDJ->intro("Song A", "Band B", "Album C", true, [this](auto line) {
            EXPECT_FALSE(desktop.time.isMainThread());
            answers.push_back(std::move(line));
        });
    }
    void requestAndWait(VirtualTime::Duration duration = std::chrono::seconds(1))
    {
        request();
        desktop.time.advance(duration);
    }
    [[nodiscard]] std::vector<Entry> entries() const
    {
        std::vector<Entry> found;
        for (const auto& entry : log->entries.get()) found.emplace_back(entry->message, entry->level);
        return found;
    }
    [[nodiscard]] const ChildProcessSetup& child(std::size_t i = 0) const
    {
        return desktop.launcher.children.at(i)->setup;
    }
    [[nodiscard]] std::vector<std::string> errors() const
    {
        return desktop.systemLog.published(LogLevel::error, "AIDJ");
    }
};

}  // namespace sonvara::test
