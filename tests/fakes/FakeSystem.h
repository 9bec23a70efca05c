// The small ports: notifications, settings, logs, environment, pasteboard, login item, application.
#pragma once

#include "fakes/VirtualTime.h"
#include "ports/Application.h"
#include "ports/LoginItem.h"
#include "ports/NotificationCenter.h"
#include "ports/Pasteboard.h"
#include "ports/System.h"
#include "ports/SystemLog.h"
#include "ports/UserDefaults.h"
#include "support/Callbacks.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace sonvara::test {

class FakeNotificationCenter final : public NotificationCenter {
public:
    explicit FakeNotificationCenter(VirtualTime& time) : time_(time) {}
    Subscription addObserver(const std::string& name,
                             std::function<void(const Notification&)> observer) override
    {
        EXPECT_TRUE(time_.isMainThread());
        registrations.push_back(name);
        return observers_[name].add(std::move(observer));
    }
    /// Test: a player posts this; it is delivered at once, in a main-thread turn of its own.
    void deliver(const Notification& notification)
    {
        time_.post([this, notification] { observers_[notification.name].call(notification); });
    }

    std::vector<std::string> registrations;

private:
    VirtualTime& time_;
    std::map<std::string, Callbacks<const Notification&>> observers_;
};

/// Read from any thread; the test's turns are the only writers, and they never overlap with readers.
class FakeUserDefaults final : public UserDefaults {
public:
    using Value = std::variant<bool, std::string>;

    [[nodiscard]] bool hasObject(const std::string& key) const override { return values.contains(key); }
    [[nodiscard]] bool boolForKey(const std::string& key) const override
    {
        const auto found = values.find(key);
        const auto* value = found == values.end() ? nullptr : std::get_if<bool>(&found->second);
        return value != nullptr && *value;
    }
    [[nodiscard]] std::optional<std::string> stringForKey(const std::string& key) const override
    {
        const auto found = values.find(key);
        const auto* value = found == values.end() ? nullptr : std::get_if<std::string>(&found->second);
        return value != nullptr ? std::optional(*value) : std::nullopt;
    }
    void setBool(const std::string& key, bool value) override { store(key, value); }
    void setString(const std::string& key, const std::string& value) override { store(key, value); }
    Subscription onChange(std::function<void()> changed) override { return changed_.add(std::move(changed)); }

    std::map<std::string, Value> values;

private:
    void store(const std::string& key, Value value)
    {
        values[key] = std::move(value);
        changed_.call();
    }
    Callbacks<> changed_;
};

class FakeSystemLog final : public SystemLog {
public:
    struct Message {
        LogLevel level;
        std::string category;
        std::string text;       ///< all pieces
        std::string published;  ///< with "<private>" in place of the private ones
    };
    [[nodiscard]] bool isEnabled(LogLevel /*level*/, std::string_view /*category*/) const override
    {
        return true;
    }
    void write(const LogMessage& message) override
    {
        Message rendered{message.level, message.category, "", ""};
        for (const auto& piece : message.pieces) {
            rendered.text += piece.text;
            rendered.published += piece.isPublic ? piece.text : "<private>";
        }
        messages.push_back(rendered);
    }
    /// Test: the texts of one level and category, in order.
    [[nodiscard]] std::vector<std::string> texts(LogLevel level, const std::string& category) const
    {
        return select(level, category, &Message::text);
    }
    /// Test: the same as in a log that is kept.
    [[nodiscard]] std::vector<std::string> published(LogLevel level, const std::string& category) const
    {
        return select(level, category, &Message::published);
    }

    std::vector<Message> messages;

private:
    [[nodiscard]] std::vector<std::string> select(LogLevel level, const std::string& category,
                                                  std::string Message::* form) const
    {
        std::vector<std::string> found;
        for (const auto& message : messages) {
            if (message.level == level && message.category == category) found.push_back(message.*form);
        }
        return found;
    }
};

class FakeEnvironment final : public Environment {
public:
    [[nodiscard]] Variables variables() const override { return values; }
    Variables values{{"PATH", "/usr/games"}, {"HOME", "/home/listener"}};
};

class FakePasteboard final : public Pasteboard {
public:
    void clearContents() override { contents.clear(); }
    void setString(const std::string& text) override { contents.push_back(text); }
    std::vector<std::string> contents{"an older copy"};
};

class FakeLoginItem final : public LoginItem {
public:
    [[nodiscard]] LoginItemStatus status() const override
    {
        ++statusReads;
        return state;
    }
    std::optional<std::string> registerItem() override { return change(afterRegistering); }
    std::optional<std::string> unregisterItem() override { return change(LoginItemStatus::notRegistered); }

    LoginItemStatus state = LoginItemStatus::notRegistered;
    LoginItemStatus afterRegistering = LoginItemStatus::enabled;
    std::optional<std::string> error;
    mutable int statusReads = 0;

private:
    std::optional<std::string> change(LoginItemStatus to)
    {
        if (!error) state = to;
        return error;
    }
};

class FakeApplication final : public Application {
public:
    void setDelegate(std::weak_ptr<ApplicationDelegate> newDelegate) override
    {
        delegate = std::move(newDelegate);
    }
    int run() override
    {
        const auto told = delegate.lock();
        EXPECT_NE(told, nullptr) << "the delegate must live while the application runs";
        if (told) told->applicationDidFinishLaunching();
        if (whileRunning) whileRunning();
        return 0;
    }
    void activateIgnoringOtherApps() override
    {
        ++activations;
        if (onActivate) onActivate();
    }
    void terminate() override { ++terminations; }

    std::weak_ptr<ApplicationDelegate> delegate;
    std::function<void()> whileRunning;  ///< the test's part of the event loop
    std::function<void()> onActivate;    ///< the test looks on
    int activations = 0;
    int terminations = 0;
};

}  // namespace sonvara::test
