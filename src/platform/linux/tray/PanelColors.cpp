#include "platform/linux/tray/PanelColors.h"

#include "platform/linux/style/ThemeWatcher.h"
#include "platform/linux/tray/HostManner.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace sonvara {

namespace {

const QString portal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString portalSettings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");
const QString xfconf = QStringLiteral("org.xfce.Xfconf");
const QString xfconfPath = QStringLiteral("/org/xfce/Xfconf");
const QString xfcePanel = QStringLiteral("xfce4-panel");
const QString darkMode = QStringLiteral("/panels/dark-mode");

const RoleColors onDarkPanel = RoleColors::on(QColor(0x2d, 0x2d, 0x2d), QColor(0xf2, 0xf2, 0xf2));
const RoleColors onLightPanel = RoleColors::on(QColor(0xf0, 0xf0, 0xf0), QColor(0x23, 0x26, 0x29));

/// The value inside any number of variants.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

/// 1 asks for dark, 2 for light; everything else has no preference.
std::optional<bool> preference(const QVariant& scheme)
{
    const auto wish = unwrapped(scheme).toUInt();
    if (wish == 1 || wish == 2) return wish == 1;
    return std::nullopt;
}

}  // namespace

PanelColors::PanelColors()
    : isGnome_(isDesktop("GNOME")),
      services_(portal, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration)
{
    services_.addWatchedService(xfconf);
    qRegisterMetaType<QDBusVariant>();  // a slot with a type that nobody has used yet is refused
    auto bus = QDBusConnection::sessionBus();
    // No senders are named: Qt would ask who they are now, and wait for the answers.
    bus.connect(QString(), portalPath, portalSettings, QStringLiteral("SettingChanged"), this,
                SLOT(portalSettingChanged(QString, QString, QDBusVariant)));
    bus.connect(QString(), xfconfPath, xfconf, QStringLiteral("PropertyChanged"), this,
                SLOT(xfceSettingChanged(QString, QString, QDBusVariant)));
    connect(&services_, &QDBusServiceWatcher::serviceRegistered, this,
            [this](const QString& service) { service == portal ? askPortal() : askXfce(); });
    askPortal();
    askXfce();
    connect(&ThemeWatcher::instance(), &ThemeWatcher::changed, this, &PanelColors::changed);
}

RoleColors PanelColors::colors() const
{
    const auto own = RoleColors::of(QApplication::palette());
    const bool isOwnDark = own.label.lightnessF() > 0.5F;
    const auto isDark = isKnownDark();
    if (!isDark || *isDark == isOwnDark) return own.withHalo();
    return (*isDark ? onDarkPanel : onLightPanel).withHalo();
}

std::optional<bool> PanelColors::isKnownDark() const
{
    if (isXfcePanelDark_ == true || isGnome_) return true;
    return prefersDark_;
}

// Neither service is started for this: a desktop that uses it has it running, or will start it.
void PanelColors::ask(const QDBusMessage& question, std::function<void(const QVariant&)> answered)
{
    auto* call = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, answered = std::move(answered)] {
        call->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (reply.isError()) return;
        answered(unwrapped(reply.value().variant()));
        Q_EMIT changed();
    });
}

void PanelColors::askPortal()
{
    auto question =
        QDBusMessage::createMethodCall(portal, portalPath, portalSettings, QStringLiteral("Read"));
    question << appearance << colorScheme;
    question.setAutoStartService(false);
    ask(question, [this](const QVariant& scheme) { prefersDark_ = preference(scheme); });
}

void PanelColors::askXfce()
{
    auto question = QDBusMessage::createMethodCall(xfconf, xfconfPath, xfconf, QStringLiteral("GetProperty"));
    question << xfcePanel << darkMode;
    question.setAutoStartService(false);
    ask(question, [this](const QVariant& dark) { isXfcePanelDark_ = dark.toBool(); });
}

void PanelColors::portalSettingChanged(const QString& group, const QString& key, const QDBusVariant& value)
{
    if (group != appearance || key != colorScheme) return;
    prefersDark_ = preference(value.variant());
    Q_EMIT changed();
}

void PanelColors::xfceSettingChanged(const QString& channel, const QString& property,
                                     const QDBusVariant& value)
{
    if (channel != xfcePanel || property != darkMode) return;
    isXfcePanelDark_ = unwrapped(value.variant()).toBool();
    Q_EMIT changed();
}

}  // namespace sonvara
