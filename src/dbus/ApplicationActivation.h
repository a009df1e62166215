#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

class DesktopBusService;

/// org.freedesktop.Application beside Glowdeck's own interface: what a desktop calls when it starts the
/// program through D-Bus (the desktop entry is DBusActivatable, and the bus starts Glowdeck for a call when
/// it does not run). Activate and Open show the window; the desktop entry's actions switch the home.
class ApplicationActivation final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ApplicationActivation)
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Offered with `service`, whose child it becomes.
    explicit ApplicationActivation(DesktopBusService& service);

public Q_SLOTS:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    /// "all-on" and "all-off", the actions of the desktop entry; others are ignored.
    void ActivateAction(const QString& name, const QVariantList& parameter, const QVariantMap& platformData);

private:
    DesktopBusService& m_service;
};
