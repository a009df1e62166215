#include "dbus/ApplicationActivation.h"

#include "dbus/DesktopBusService.h"

ApplicationActivation::ApplicationActivation(DesktopBusService& service)
    : QDBusAbstractAdaptor(&service), m_service(service)
{}

void ApplicationActivation::Activate(const QVariantMap& platformData)
{
    Q_UNUSED(platformData)
    m_service.OpenWindow();
}

void ApplicationActivation::Open(const QStringList& uris, const QVariantMap& platformData)
{
    // Glowdeck opens no documents: being asked to is being asked for the window.
    Q_UNUSED(uris)
    Activate(platformData);
}

void ApplicationActivation::ActivateAction(const QString& name, const QVariantList& parameter,
                                           const QVariantMap& platformData)
{
    Q_UNUSED(parameter)
    Q_UNUSED(platformData)
    if (name == u"all-on")
        m_service.AllOn();
    else if (name == u"all-off")
        m_service.AllOff();
}
