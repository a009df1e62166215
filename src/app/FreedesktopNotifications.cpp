#include "app/FreedesktopNotifications.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

namespace {

const QString interface = QStringLiteral("org.freedesktop.Notifications");
// The desktop entry's name and icon: the service may show the program's icon and group its notifications.
const QString applicationId = QStringLiteral("com.brambleworks.Glowdeck");
// -1: the service decides how long a notification shows.
constexpr int serviceTimeout = -1;

} // namespace

FreedesktopNotifications::FreedesktopNotifications(QDBusConnection bus, QObject* parent)
    : QObject(parent), m_bus(std::move(bus))
{
    // A notification the user dismissed comes back as a new one, not as a replacement of nothing.
    if (m_bus.isConnected())
        m_bus.connect(service, path, interface, QStringLiteral("NotificationClosed"), this,
                      SLOT(onClosed(uint, uint)));
}

void FreedesktopNotifications::show(const QString& topic, const QString& summary, const QString& body)
{
    if (!m_bus.isConnected())
        return;
    Shown& shown = m_topics[topic];
    if (shown.asking) {
        shown.next = {summary, body};
        shown.waiting = true;
        return;
    }
    send(topic, {summary, body});
}

void FreedesktopNotifications::send(const QString& topic, const Text& text)
{
    Shown& shown = m_topics[topic];
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Notify"));
    const QVariantMap hints{{QStringLiteral("desktop-entry"), applicationId}};
    call << QStringLiteral("Glowdeck") << shown.id << applicationId << text.summary << text.body
         << QStringList() << hints << serviceTimeout;
    shown.asking = true;
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, topic](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        const QDBusPendingReply<uint> reply = *w;
        Shown& shown = m_topics[topic];
        shown.asking = false;
        // No service (or a broken one): nothing shows, and the next one is a new notification.
        shown.id = reply.isError() ? 0 : reply.value();
        if (std::exchange(shown.waiting, false))
            send(topic, shown.next);
    });
}

void FreedesktopNotifications::onClosed(uint id, uint)
{
    for (Shown& shown : m_topics) {
        if (shown.id == id && id != 0)
            shown.id = 0;
    }
}
