#include "CtlBridge.h"

#include "CtlCommon.h"

#include "state/AppSettings.h"
#include "state/JsonSettingsStore.h"
#include "state/MemorySettingsStore.h"
#include "state/Preferences.h"

#include <QFileInfo>
#include <QNetworkAccessManager>

using Ctl::printable;
using Ctl::printError;

CtlBridge::CtlBridge() = default;

CtlBridge::~CtlBridge() = default;

bool CtlBridge::open(const CtlInvocation& invocation)
{
    const QString file = Ctl::settingsFileName(invocation);

    QString address = invocation.bridge;
    QString key = invocation.key;
    // Anything in the way (a folder too) is opened, so that the store says what is wrong with it.
    const bool fileExists = QFileInfo::exists(file);
    if (fileExists) {
        auto store = std::make_unique<JsonSettingsStore>(file);
        const Preferences preferences(*store);
        const QString storedAddress = preferences.bridgeAddress();
        if (address.isEmpty())
            address = storedAddress;
        if (key.isEmpty())
            key = preferences.bridgeKey();
        // What was learnt about the stored bridge holds for it, and for nothing else.
        if (address == storedAddress) {
            AppSettings stored(*store);
            stored.load();
            m_knowledge = {stored.bridgeTransport(), stored.bridgeIdentity(), false};
        }
        m_store = std::move(store);
    } else {
        m_store = std::make_unique<MemorySettingsStore>();
    }

    if (address.isEmpty() || key.isEmpty()) {
        const QString missing = address.isEmpty() && key.isEmpty()
                                    ? QStringLiteral("No bridge address and key")
                                : address.isEmpty() ? QStringLiteral("No bridge address")
                                                    : QStringLiteral("No bridge key");
        const QString where = fileExists ? QStringLiteral("stored in %1").arg(file)
                                         : QStringLiteral("known: there is no settings file %1").arg(file);
        printError(QStringLiteral(
                       "%1 %2.\nRun 'glowdeckctl discover' and 'glowdeckctl pair' first, or pass --bridge "
                       "HOST[:PORT] and --key KEY.")
                       .arg(missing, where));
        return false;
    }

    m_settings = std::make_unique<AppSettings>(*m_store);
    m_settings->setHueIP(address);
    m_settings->setHueKey(key);
    return true;
}

void CtlBridge::reach(QNetworkAccessManager& network, QObject* context,
                      std::function<void(bool reached)> done)
{
    // The bridge proves who it is before its key is sent: the one stored, or for an address given with
    // --bridge, any bridge whose certificate its maker signed.
    const std::optional<BridgeAddress> address = BridgeAddress::parse(m_settings->hueIP());
    if (!address) {
        printError(QStringLiteral("The bridge address %1 is not HOST[:PORT] or https://HOST[:PORT].")
                       .arg(printable(m_settings->hueIP())));
        return done(false);
    }
    if (!needsProbe(*address, m_knowledge.transport, m_knowledge.identity.bridgeId)) {
        const QString transport = address->scheme.isEmpty() ? m_knowledge.transport : address->scheme;
        m_settings->setBridgeContact(transport, m_knowledge.identity.bridgeId,
                                     m_knowledge.identity.pinnedKey);
        return done(true);
    }
    probeBridge(network, *address, m_knowledge, context, [this, done](const ProbeResult& result) {
        if (!result.contact) {
            printError(printable(result.problem));
            return done(false);
        }
        m_settings->setHueIP(addressAfter(m_settings->hueIP(), *result.contact));
        m_settings->setBridgeContact(result.contact->transport, result.contact->bridgeId,
                                     result.contact->pinnedKey);
        done(true);
    });
}
