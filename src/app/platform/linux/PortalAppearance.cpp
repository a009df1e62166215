#include "app/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colorScheme = QStringLiteral("color-scheme");
constexpr uint preferDark = 1; // 0: no preference, 2: prefer light

/// The portal wraps the value in one variant more than its signature says; unwrap whatever is there.
uint schemeOf(QVariant value)
{
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt();
}

/// Reads "color-scheme" once and follows the portal's SettingChanged signal.
class PortalAppearance final : public DesktopAppearance
{
    Q_OBJECT

public:
    PortalAppearance()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected())
            return;
        bus.connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                    SLOT(onSettingChanged(QString, QString, QDBusVariant)));
        QDBusMessage read = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface,
                                                           QStringLiteral("Read"));
        read << appearance << colorScheme;
        // Asynchronous: a desktop without a portal must not hold up the start.
        auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(read, 2000), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
            const QDBusPendingReply<QDBusVariant> reply = *call;
            if (!reply.isError())
                Q_EMIT prefersDarkChanged(schemeOf(QVariant::fromValue(reply.value())) == preferDark);
            call->deleteLater();
        });
    }

private Q_SLOTS:
    void onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value)
    {
        if (group == appearance && key == colorScheme)
            Q_EMIT prefersDarkChanged(schemeOf(value.variant()) == preferDark);
    }
};

} // namespace

std::unique_ptr<DesktopAppearance> createDesktopAppearance()
{
    return std::make_unique<PortalAppearance>();
}

#include "PortalAppearance.moc"
