#include "platform/linux/tray/PanelColors.h"

#include "helpers/EventLoop.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace sonvara::test {

namespace {

/// Answers every question about a setting with `value`, below a service's name.
class FakeSettings final : public QDBusVirtualObject {
public:
    FakeSettings(const QString& service, const QString& path, QVariant value)
        : service_(service),
          path_(path),
          value_(std::move(value))
    {
        bus_.registerVirtualObject(path, this);
        bus_.registerService(service);
        // A panel that is made now asks by itself, and not because it hears of this name only then.
        EXPECT_TRUE(QDBusConnection::sessionBus().interface()->isServiceRegistered(service));
        runEvents();
    }
    ~FakeSettings() override
    {
        bus_.unregisterService(service_);
        bus_.unregisterObject(path_);
    }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value_))));
        return true;
    }

    /// Signals another value than questions get.
    void tell(const QString& interface, const QString& name, const QString& group, const QString& key,
              QVariant value)
    {
        auto signal = QDBusMessage::createSignal(path_, interface, name);
        signal << group << key << QVariant::fromValue(QDBusVariant(std::move(value)));
        bus_.send(signal);
    }

private:
    QString service_;
    QString path_;
    QVariant value_;
    QDBusConnection bus_ = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "fake-settings");
};

const QString portal = "org.freedesktop.portal.Desktop";
const QString portalPath = "/org/freedesktop/portal/desktop";

bool isLight(const PanelColors& panel)
{
    return panel.colors().label.lightnessF() > 0.5F;  // the text, so the panel is dark
}

/// Whether all questions have been answered, and nothing is left of them.
bool isAnswered(const PanelColors& panel)
{
    return eventually([&] {
        runEvents();
        return panel.findChildren<QDBusPendingCallWatcher*>().isEmpty();
    });
}

TEST(PanelColorsTest, FollowTheThemeOfTheApplicationByDefault)
{
    const PanelColors panel;
    const QSignalSpy changes(&panel, &PanelColors::changed);
    EXPECT_TRUE(isAnswered(panel));
    EXPECT_TRUE(changes.isEmpty()) << "nobody has told anything";
    EXPECT_EQ(panel.colors(), RoleColors::of(QApplication::palette()).withHalo());
    EXPECT_EQ(panel.colors().label, QApplication::palette().color(QPalette::WindowText));
    EXPECT_FALSE(isLight(panel));
}

TEST(PanelColorsTest, FollowTheDesktopsPreference)
{
    FakeSettings settings(portal, portalPath, QVariant::fromValue(QDBusVariant(1U)));
    const PanelColors panel;
    EXPECT_TRUE(eventually([&] { return isLight(panel); }));
    EXPECT_TRUE(isAnswered(panel));
    settings.tell("org.freedesktop.portal.Settings", "SettingChanged", "org.freedesktop.appearance",
                  "color-scheme", 2U);
    EXPECT_TRUE(eventually([&] { return !isLight(panel); }));
    settings.tell("org.freedesktop.portal.Settings", "SettingChanged", "org.freedesktop.appearance",
                  "color-scheme", 1U);
    EXPECT_TRUE(eventually([&] { return isLight(panel); }));
}

TEST(PanelColorsTest, FollowTheThemeWhereTheDesktopHasNoPreference)
{
    for (const uint scheme : {0U, 3U}) {
        const FakeSettings settings(portal, portalPath, QVariant::fromValue(QDBusVariant(scheme)));
        const PanelColors panel;
        EXPECT_TRUE(isAnswered(panel));
        EXPECT_EQ(panel.colors().label, QApplication::palette().color(QPalette::WindowText));
    }
}

TEST(PanelColorsTest, HearOfNoOtherSetting)
{
    FakeSettings theme(portal, portalPath, 0U);
    FakeSettings xfce("org.xfce.Xfconf", "/org/xfce/Xfconf", false);
    const PanelColors panel;
    EXPECT_TRUE(isAnswered(panel));
    const QSignalSpy changes(&panel, &PanelColors::changed);
    const QString portalSettings = "org.freedesktop.portal.Settings";
    theme.tell(portalSettings, "SettingChanged", "org.freedesktop.appearance", "contrast", 1U);
    theme.tell(portalSettings, "SettingChanged", "org.gnome.desktop.interface", "color-scheme", 1U);
    xfce.tell("org.xfce.Xfconf", "PropertyChanged", "xfce4-panel", "/panels/size", true);
    xfce.tell("org.xfce.Xfconf", "PropertyChanged", "xsettings", "/panels/dark-mode", true);
    theme.tell(portalSettings, "SettingChanged", "org.freedesktop.appearance", "color-scheme", 2U);
    EXPECT_TRUE(eventually([&] { return !changes.isEmpty(); }));
    EXPECT_EQ(changes.size(), 1);
    EXPECT_FALSE(isLight(panel));
}

TEST(PanelColorsTest, AreNeutralWhereThePanelIsOfAnotherToneThanTheTheme)
{
    const auto before = QApplication::palette();
    FakeSettings settings(portal, portalPath, 1U);
    const PanelColors panel;
    EXPECT_TRUE(isAnswered(panel));
    EXPECT_EQ(panel.colors(), RoleColors::on(QColor(0x2d, 0x2d, 0x2d), QColor(0xf2, 0xf2, 0xf2)).withHalo());
    QApplication::setPalette(QPalette(QColor(0x30, 0x30, 0x30)));
    EXPECT_EQ(panel.colors(), RoleColors::of(QApplication::palette()).withHalo()) << "both are dark";
    settings.tell("org.freedesktop.portal.Settings", "SettingChanged", "org.freedesktop.appearance",
                  "color-scheme", 2U);
    EXPECT_TRUE(eventually([&] { return !isLight(panel); }));
    EXPECT_EQ(panel.colors(), RoleColors::on(QColor(0xf0, 0xf0, 0xf0), QColor(0x23, 0x26, 0x29)).withHalo());
    QApplication::setPalette(before);
}

TEST(PanelColorsTest, TellOfAChangeOfTheTheme)
{
    const PanelColors panel;
    const QSignalSpy changes(&panel, &PanelColors::changed);
    const auto before = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(0x30, 0x30, 0x30)));
    EXPECT_TRUE(eventually([&] { return !changes.isEmpty(); }));
    QApplication::setPalette(before);
}

TEST(PanelColorsTest, KnowTheDarkPanelOfXfce)
{
    FakeSettings settings("org.xfce.Xfconf", "/org/xfce/Xfconf", false);
    const PanelColors panel;
    const QSignalSpy changes(&panel, &PanelColors::changed);
    EXPECT_TRUE(eventually([&] { return !changes.isEmpty(); }));
    EXPECT_TRUE(isAnswered(panel));
    EXPECT_FALSE(isLight(panel));
    const auto before = changes.size();
    settings.tell("org.xfce.Xfconf", "PropertyChanged", "xfce4-panel", "/panels/dark-mode", true);
    EXPECT_TRUE(eventually([&] { return isLight(panel); }));
    EXPECT_EQ(changes.size(), before + 1);
}

TEST(PanelColorsTest, AskAServiceThatStartsLater)
{
    const PanelColors panel;
    runEvents();
    const FakeSettings settings("org.xfce.Xfconf", "/org/xfce/Xfconf", true);
    EXPECT_TRUE(eventually([&] { return isLight(panel); }));
}

TEST(PanelColorsTest, KnowTheBarOfGnome)
{
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    const PanelColors panel;
    qunsetenv("XDG_CURRENT_DESKTOP");
    EXPECT_TRUE(isLight(panel));
}

}  // namespace

}  // namespace sonvara::test
