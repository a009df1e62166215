#include "TestSupport.h"

#include <QHostAddress>

TestSettings::TestSettings()
{
    reopen();
}

void TestSettings::reopen()
{
    m_settings.reset();
    m_store = std::make_unique<JsonSettingsStore>(fileName());
    m_settings = std::make_unique<BridgeLink>(*m_store);
    m_settings->load();
}

PrintedLines::PrintedLines()
{
    m_previous = setLineSink([this](const QString& line) { m_lines.append(line); });
}

PrintedLines::~PrintedLines()
{
    setLineSink(std::move(m_previous));
}

QList<QNetworkAddressEntry> ownNetworks(const QStringList& addressesAndPrefixes)
{
    QList<QNetworkAddressEntry> networks;
    for (const QString& network : addressesAndPrefixes) {
        QNetworkAddressEntry entry;
        entry.setIp(QHostAddress(network.section(u'/', 0, 0)));
        entry.setPrefixLength(network.section(u'/', 1).toInt());
        networks.append(entry);
    }
    return networks;
}
