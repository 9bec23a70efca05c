// The settings form: the only place where the user changes how the DJ behaves.
#pragma once

#include "ports/Form.h"
#include "support/Observable.h"
#include "system/LaunchAtLoginHelper.h"

#include <functional>
#include <memory>

namespace sonvara {

struct Platform;

/// One showing of the form. It writes the settings straight into the store, where everybody reads them.
/// Main thread.
class SettingsView final : public std::enable_shared_from_this<SettingsView> {
public:
    [[nodiscard]] static std::shared_ptr<SettingsView> create(Platform& platform);

    /// The form as a value; it keeps this view alive.
    [[nodiscard]] std::shared_ptr<const Form> form();

private:
    explicit SettingsView(Platform& platform);
    [[nodiscard]] FormSection announcements() const;
    [[nodiscard]] FormSection aiIntros() const;
    [[nodiscard]] FormSection general();
    [[nodiscard]] FormSection diagnostics();
    [[nodiscard]] Subscription onChange(std::function<void()> changed);

    Platform& platform_;
    LaunchAtLoginHelper launchHelper_;
    Observable<bool> showLog_;
};

}  // namespace sonvara
