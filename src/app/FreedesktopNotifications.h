#pragma once

#include "app/NotificationSink.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>

/// Notifications through the desktop's `org.freedesktop.Notifications` service on the session bus. Calls
/// never wait: the id the service gives a notification arrives later, and a notification of the same topic
/// shown meanwhile waits for it, so that it replaces the first rather than stacking beside it. Without a bus
/// or a service nothing is shown and nothing is said.
class FreedesktopNotifications final : public QObject, public NotificationSink
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FreedesktopNotifications)

public:
    static inline const QString service = QStringLiteral("org.freedesktop.Notifications");
    static inline const QString path = QStringLiteral("/org/freedesktop/Notifications");

    explicit FreedesktopNotifications(QDBusConnection bus = QDBusConnection::sessionBus(),
                                      QObject* parent = nullptr);

    void show(const QString& topic, const QString& summary, const QString& body) override;

private:
    struct Text
    {
        QString summary;
        QString body;
    };
    /// A topic's notification as the service knows it.
    struct Shown
    {
        uint id = 0;          ///< the service's id; 0 until it answered, or after it closed it
        bool asking = false;  ///< a call is under way: the next text waits for its id
        bool waiting = false; ///< `next` is to be shown once the call under way answered
        Text next;
    };

    void send(const QString& topic, const Text& text);

private Q_SLOTS:
    // A string-based slot: QDBusConnection::connect takes no function pointers.
    void onClosed(uint id, uint reason);

private:
    QDBusConnection m_bus;
    QHash<QString, Shown> m_topics;
};
