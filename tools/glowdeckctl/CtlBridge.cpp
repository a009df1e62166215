#include "CtlBridge.h"

#include "CtlCommon.h"

#include "state/BridgeLink.h"
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
        BridgeLink stored(*store);
        stored.load();
        if (key.isEmpty() && !preferences.bridgeKey().isEmpty()) {
            key = preferences.bridgeKey();
            const Ctl::StoredKeyUse use = Ctl::storedKeyUse(address, stored, file);
            if (!use.refusal.isEmpty()) {
                printError(use.refusal);
                return false;
            }
            m_knowledge = use.knowledge;
            m_storedKeyAdvice = use.advice;
            m_mustProbe = !sameBridgeAddress(address, storedAddress);
        } else if (sameBridgeAddress(address, storedAddress)) {
            // What was learnt about the stored bridge holds for it, and for nothing else.
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

    m_settings = std::make_unique<BridgeLink>(*m_store);
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
    if (!m_mustProbe && !needsProbe(*address, m_knowledge.transport, m_knowledge.identity.bridgeId)) {
        const QString transport = address->scheme.isEmpty() ? m_knowledge.transport : address->scheme;
        m_settings->setBridgeContact(transport, m_knowledge.identity.bridgeId,
                                     m_knowledge.identity.pinnedKey);
        return done(true);
    }
    probeBridge(network, *address, m_knowledge, context, [this, done](const ProbeResult& result) {
        if (!result.contact) {
            printError(printable(result.problem));
            if (result.refused && !m_storedKeyAdvice.isEmpty())
                printError(m_storedKeyAdvice);
            return done(false);
        }
        m_settings->setHueIP(addressAfter(m_settings->hueIP(), *result.contact));
        m_settings->setBridgeContact(result.contact->transport, result.contact->bridgeId,
                                     result.contact->pinnedKey);
        done(true);
    });
}

Ctl::StoredKeyUse Ctl::storedKeyUse(const QString& address, const BridgeLink& stored, const QString& file)
{
    const QString bridgeId = stored.bridgeID();
    const std::optional<BridgeAddress> given = BridgeAddress::parse(address);
    const QString where = given ? given->hostAndPort() : printable(address);
    const QString advice =
        QStringLiteral(
            "The key stored in %1 goes only to bridge %2. For another bridge pass --key KEY, or pair "
            "with it: glowdeckctl pair --bridge %3")
            .arg(file, bridgeId.isEmpty() ? QStringLiteral("at %1").arg(stored.hueIP()) : bridgeId,
                 printable(address));
    const bool httpsBefore = stored.bridgeTransport() == BridgeAddress::https;
    if (sameBridgeAddress(address, stored.hueIP())) {
        // The bridge it was paired with, whose id an older settings file may not hold yet: the probe learns
        // it there, and only there.
        if (given && given->scheme == BridgeAddress::http && httpsBefore)
            return {{},
                    QStringLiteral("Bridge %1 at %2 was paired over HTTPS; its key is not sent over plain "
                                   "HTTP.\n%3")
                        .arg(bridgeId, where, advice)};
        return {{stored.bridgeTransport(), stored.bridgeIdentity(), false}, {}, advice};
    }
    QString refusal;
    if (bridgeId.isEmpty())
        refusal = QStringLiteral("%1 does not say which bridge its key belongs to, so it goes to %2 only; "
                                 "the bridge at %3 cannot prove to be that bridge.")
                      .arg(file, stored.hueIP(), where);
    else if (!httpsBefore)
        refusal =
            QStringLiteral("Bridge %1 was paired over plain HTTP, so its key goes to %2 only, not to %3.")
                .arg(bridgeId, stored.hueIP(), where);
    else if (given && given->scheme == BridgeAddress::http)
        refusal =
            QStringLiteral("The key of bridge %1 is not sent over plain HTTP, where %2 cannot prove to be "
                           "that bridge.")
                .arg(bridgeId, where);
    if (!refusal.isEmpty())
        return {{}, refusal + u'\n' + advice, advice};
    // Another address, maybe the bridge's new one: its certificate must name the stored id.
    return {{BridgeAddress::https, stored.bridgeIdentity(), false}, {}, advice};
}
