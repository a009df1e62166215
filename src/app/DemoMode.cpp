#include "app/DemoMode.h"

#include "simulator/BridgeSimulator.h"
#include "state/JsonSettingsStore.h"
#include "state/Preferences.h"

#include <QDir>

#include <cstdio>

DemoMode::DemoMode() = default;
DemoMode::~DemoMode() = default;

void DemoMode::switchOffOutsideAddresses()
{
    for (const char* name : {"GLOWDECK_DISCOVERY_URL", "GLOWDECK_MDNS_SERVICE", "GLOWDECK_ARP_COMMAND",
                             "GLOWDECK_ERROR_ENDPOINT", "GLOWDECK_HELP_URL", "GLOWDECK_FEEDBACK_URL",
                             "GLOWDECK_REVIEW_URL", "GLOWDECK_WEBSITE_URL", "GLOWDECK_DONATION_URL"}) {
        if (!qEnvironmentVariableIsSet(name))
            qputenv(name, QByteArray());
    }
}

bool DemoMode::start()
{
    if (!m_folder.isValid()) {
        std::fprintf(stderr, "Glowdeck demo: cannot create a temporary folder: %s\n",
                     qPrintable(m_folder.errorString()));
        return false;
    }
    m_bridge = std::make_unique<BridgeSimulator>();
    m_bridge->setAcceptPairingAtOnce(true);
    // A demo may run for hours: keeping every request would only grow.
    m_bridge->setRecording(false);
    // HTTPS as a current bridge speaks it, with an authority of the simulator's own that only this demo
    // trusts; plain HTTP only when that cannot be had, and then said.
    QString address;
    if (m_bridge->listenTls(QHostAddress::LocalHost, 0)) {
        address = m_bridge->tlsHostAndPort();
    } else {
        std::fprintf(stderr,
                     "Glowdeck demo: the simulated bridge cannot speak HTTPS (%s); it uses plain HTTP.\n",
                     qPrintable(m_bridge->errorString()));
        if (!m_bridge->listen(QHostAddress::LocalHost, 0)) {
            std::fprintf(stderr, "Glowdeck demo: the simulated bridge cannot listen: %s\n",
                         qPrintable(m_bridge->errorString()));
            return false;
        }
        address = m_bridge->hostAndPort();
    }
    {
        JsonSettingsStore store(settingsFile());
        Preferences(store).setBridgeAddress(address);
    }
    std::fprintf(stdout, "Glowdeck demo: simulated Hue bridge at %s\n", qPrintable(address));
    std::fflush(stdout);
    return true;
}

QString DemoMode::settingsFile() const
{
    return m_folder.filePath(QStringLiteral("settings.json"));
}

QList<QSslCertificate> DemoMode::trustRoots() const
{
    if (!m_bridge || m_bridge->tlsPort() == 0)
        return {};
    return {m_bridge->authorityCertificate()};
}

QString DemoMode::crashFolder() const
{
    return m_folder.filePath(QStringLiteral("crashes"));
}

QString DemoMode::loginItemFolder() const
{
    return m_folder.filePath(QStringLiteral("login"));
}
