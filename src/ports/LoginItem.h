// Port: starting the application when the user logs in.
#pragma once

#include <optional>
#include <string>

namespace sonvara {

enum class LoginItemStatus { notRegistered, enabled, requiresApproval, notFound };

/// The application's own registration as a login item. Main thread; calls are short and synchronous.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    [[nodiscard]] virtual LoginItemStatus status() const = 0;
    /// Both return nothing on success, else a description of the error; then nothing has changed.
    [[nodiscard]] virtual std::optional<std::string> registerItem() = 0;
    [[nodiscard]] virtual std::optional<std::string> unregisterItem() = 0;
};

}  // namespace sonvara
