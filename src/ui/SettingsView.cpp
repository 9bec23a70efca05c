#include "ui/SettingsView.h"

#include "ai/AIProvider.h"
#include "log/DJLog.h"
#include "ports/Platform.h"
#include "ports/UserDefaults.h"
#include "ui/ChangeSignal.h"
#include "ui/LogView.h"

#include <utility>

namespace sonvara {
namespace {

StyledText help(const char* text)
{
    return {text, FontRole::caption, ColorRole::secondaryLabel};
}

/// A setting that a control shows and writes at once.
Binding<bool> stored(UserDefaults& defaults, const Setting<bool>& setting)
{
    return {[&defaults, &setting] { return read(defaults, setting); },
            [&defaults, &setting](bool value) { defaults.setBool(setting.key, value); }};
}

Binding<std::string> stored(UserDefaults& defaults, const Setting<const char*>& setting)
{
    return {[&defaults, &setting] { return defaults.stringForKey(setting.key).value_or(setting.whenAbsent); },
            [&defaults, &setting](const std::string& value) { defaults.setString(setting.key, value); }};
}

}  // namespace

std::shared_ptr<SettingsView> SettingsView::create(Platform& platform)
{
    return std::shared_ptr<SettingsView>(new SettingsView(platform));
}

SettingsView::SettingsView(Platform& platform) : platform_(platform), launchHelper_(platform.loginItem) {}

std::shared_ptr<const Form> SettingsView::form()
{
    const auto self = shared_from_this();
    auto form = std::make_shared<Form>();
    form->width = 420;
    form->height = 420;
    form->sections = {announcements(), aiIntros(), general(), diagnostics()};
    form->onAppear = [self] { self->launchHelper_.checkStatus(); };
    form->onChange = [self](std::function<void()> changed) { return self->onChange(std::move(changed)); };
    form->isSheetShown = {[self] { return self->showLog_.get(); },
                          [self](bool isShown) { self->showLog_.set(isShown); }};
    form->sheet = [self] {
        return LogView(self->platform_, DJLog::shared(), [self] { self->showLog_.set(false); }).sheet();
    };
    return form;
}

FormSection SettingsView::announcements() const
{
    auto& defaults = platform_.userDefaults;
    return {
        "Announcements",
        {Toggle{"Announce tracks", stored(defaults, settings::announcementsEnabled)},
         Toggle{"Lower music while speaking", stored(defaults, settings::duckMusic)},
         help("Skips tracks played straight through from the same album, and only speaks on a new or next "
              "track (never on resume).")}};
}

FormSection SettingsView::aiIntros() const
{
    auto& defaults = platform_.userDefaults;
    Picker engine;
    engine.title = "Engine";
    for (const auto& tool : AIProvider::allCases)
        engine.options.push_back({std::string(tool.displayName()), std::string(tool.rawValue())});
    engine.selection = stored(defaults, settings::aiProvider);
    engine.isEnabled = stored(defaults, settings::aiIntros).get;
    return {"AI intros",
            {Toggle{"Use AI for intros", stored(defaults, settings::aiIntros)}, std::move(engine),
             help("Runs your local CLI (already signed in, no API key). Claude is faster; Gemini is a little "
                  "slower. If it stalls, Sonvara uses an offline line.")}};
}

FormSection SettingsView::general()
{
    const auto self = shared_from_this();
    return {"General",
            {Toggle{"Launch at login",
                    {[self] { return self->launchHelper_.isEnabled.get(); },
                     [self](bool) { self->launchHelper_.toggle(); }}}}};
}

FormSection SettingsView::diagnostics()
{
    PushButton viewLog;
    viewLog.title = [] { return "View log (" + std::to_string(DJLog::shared().entries.get().size()) + ")"; };
    viewLog.isEnabled = [] { return true; };
    viewLog.action = [self = shared_from_this()] { self->showLog_.set(true); };
    return {"Diagnostics",
            {std::move(viewLog), help("Shows recent activity, including AI CLI calls and any failures.")}};
}

Subscription SettingsView::onChange(std::function<void()> changed)
{
    const auto signal = ChangeSignal::create(platform_.mainQueue, std::move(changed));
    signal->keep(platform_.userDefaults.onChange([weak = std::weak_ptr(signal)] {
        if (const auto alive = weak.lock()) alive->raise();
    }));
    signal->observe(launchHelper_.isEnabled);
    signal->observe(showLog_);
    signal->observe(DJLog::shared().entries);
    return signal->handle();
}

}  // namespace sonvara
