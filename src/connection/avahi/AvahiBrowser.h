#pragma once

#include "connection/LocalNetworkBrowser.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QTimer>

/// Browses for "_hue._tcp" through Avahi's D-Bus interface on the system bus (a service browser, then a
/// resolver per announced service for its IPv4 address, port and TXT record). Avahi not on the bus is one log
/// line and no bridge.
class AvahiBrowser final : public QObject, public LocalNetworkBrowser
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AvahiBrowser)

public:
    /// The D-Bus name asked: "org.freedesktop.Avahi", or GLOWDECK_MDNS_SERVICE when set (empty switches the
    /// browsing off: tests and the demo send nothing to the local network).
    static QString defaultServiceName();

    explicit AvahiBrowser(QDBusConnection bus = QDBusConnection::systemBus(),
                          QString serviceName = defaultServiceName(), QObject* parent = nullptr);
    ~AvahiBrowser() override;

    void browse(std::chrono::milliseconds limit, std::function<void(QList<Found>)> done) override;

private Q_SLOTS:
    void onItemNew(int interface, int protocol, const QString& name, const QString& type,
                   const QString& domain, uint flags);
    void onAllForNow();
    void onFailure(const QString& error);

private:
    void onBrowserCreated(const QDBusMessage& reply);
    void onResolved(quint64 browse, const QDBusMessage& reply);
    /// Answers the caller once, and lets go of Avahi's browser.
    void finish();
    void watchBrowser(bool watch);

    QDBusConnection m_bus;
    QString m_service;
    QTimer m_limit;
    std::function<void(QList<Found>)> m_done;
    QList<Found> m_found;
    quint64 m_browse = 0; // tells the answers of an abandoned browse from the current one's
    QString m_browserPath;
    int m_resolving = 0;
    bool m_allForNow = false;
};
