#include "CtlBridge.h"

#include "CtlCommon.h"

#include "bridge/HttpExchange.h"
#include "connection/BridgeConnection.h"
#include "state/BridgeLink.h"
#include "state/JsonSettingsStore.h"
#include "state/MemorySettingsStore.h"
#include "state/Preferences.h"

#include <QFileInfo>
#include <QNetworkAccessManager>

#include <algorithm>

using Ctl::printable;
using Ctl::printError;

CtlLink::CtlLink(const BridgeContact& contact) : m_store(std::make_unique<MemorySettingsStore>())
{
    // Stored too, for what reads the store's first bridge (pairing asks whether it pairs that one again).
    if (!contact.address.isEmpty())
        Preferences(*m_store).setBridges({contact});
    m_state = std::make_unique<BridgeLink>(*m_store);
    m_state->setHueIP(contact.address);
    m_state->setHueKey(contact.key);
    m_state->setBridgeContact(contact.transport, contact.id, contact.certificate);
    m_state->setBridgeName(contact.name);
}

CtlLink::~CtlLink() = default;

CtlBridge::~CtlBridge() = default;

namespace {

/// "001788FFFE6A3B2C (Philips hue), 001788FFFE9C4D5E": the paired bridges, for a message.
QString pairedIds(const QList<BridgeContact>& bridges)
{
    QStringList ids;
    for (const BridgeContact& bridge : bridges) {
        if (!bridge.id.isEmpty())
            ids << bridge.id + (bridge.name.isEmpty() ? QString()
                                                      : QStringLiteral(" (%1)").arg(printable(bridge.name)));
    }
    return ids.isEmpty() ? Ctl::Text::tr("none is")
                         : Ctl::Text::tr("paired: ") + ids.join(QStringLiteral(", "));
}

} // namespace

std::vector<std::unique_ptr<CtlBridge>> CtlBridge::open(const CtlInvocation& invocation, int& failure)
{
    failure = exitFailed;
    const QString file = Ctl::settingsFileName(invocation);
    // Anything in the way (a folder too) is opened, so that the store says what is wrong with it.
    const bool fileExists = QFileInfo::exists(file);
    QList<BridgeContact> stored;
    if (fileExists) {
        JsonSettingsStore store(file);
        stored = Preferences(store).bridges();
    }
    if (!invocation.bridgeId.isEmpty()) {
        const auto picked = std::find_if(stored.cbegin(), stored.cend(), [&](const BridgeContact& bridge) {
            return bridge.id.compare(invocation.bridgeId, Qt::CaseInsensitive) == 0;
        });
        if (picked == stored.cend()) {
            printError(Ctl::Text::tr("No bridge %1 is paired in %2; %3.")
                           .arg(invocation.bridgeId, file, pairedIds(stored)));
            failure = exitUsage;
            return {};
        }
        stored = {*picked};
    }
    const auto storedAt = [&stored](const QString& address) -> const BridgeContact* {
        const auto same = std::find_if(stored.cbegin(), stored.cend(), [&](const BridgeContact& bridge) {
            return sameBridgeAddress(address, bridge.address);
        });
        return same == stored.cend() ? nullptr : &*same;
    };

    std::vector<std::unique_ptr<CtlBridge>> bridges;
    bool addressKnown = !invocation.bridge.isEmpty(), keyKnown = !invocation.key.isEmpty();
    if (!invocation.bridge.isEmpty()) {
        // The stored key is the one of the bridge at that address, else of the first (which may have moved).
        const BridgeContact* known = storedAt(invocation.bridge);
        const BridgeContact* owner = known ? known : stored.isEmpty() ? nullptr : &stored.constFirst();
        if (owner && owner->key.isEmpty())
            owner = nullptr;
        keyKnown = keyKnown || owner;
        if (keyKnown) {
            std::unique_ptr<CtlBridge> bridge(new CtlBridge);
            const bool storedKey = invocation.key.isEmpty();
            if (!bridge->prepare(invocation.bridge, storedKey ? owner->key : invocation.key,
                                 storedKey ? owner : nullptr, known, file))
                return {};
            bridges.push_back(std::move(bridge));
        }
    } else {
        if (!invocation.key.isEmpty() && stored.size() > 1) {
            printError(
                Ctl::Text::tr("--key is the key of one bridge: name it with --bridge-id or --bridge."));
            failure = exitUsage;
            return {};
        }
        for (const BridgeContact& contact : std::as_const(stored)) {
            addressKnown = addressKnown || !contact.address.isEmpty();
            keyKnown = keyKnown || !contact.key.isEmpty();
            const QString key = invocation.key.isEmpty() ? contact.key : invocation.key;
            if (contact.address.isEmpty() || key.isEmpty())
                continue; // found, not paired yet
            std::unique_ptr<CtlBridge> bridge(new CtlBridge);
            if (!bridge->prepare(contact.address, key, invocation.key.isEmpty() ? &contact : nullptr,
                                 &contact, file))
                return {};
            bridges.push_back(std::move(bridge));
        }
    }
    if (bridges.empty()) {
        const QString missing = !addressKnown && !keyKnown ? Ctl::Text::tr("No bridge address and key")
                                : !addressKnown            ? Ctl::Text::tr("No bridge address")
                                                           : Ctl::Text::tr("No bridge key");
        const QString where = fileExists ? Ctl::Text::tr("stored in %1").arg(file)
                                         : Ctl::Text::tr("known: there is no settings file %1").arg(file);
        printError(
            Ctl::Text::tr("%1 %2.\nRun 'glowdeckctl discover' and 'glowdeckctl pair' first, or pass --bridge "
                          "HOST[:PORT] and --key KEY.")
                .arg(missing, where));
    }
    return bridges;
}

bool CtlBridge::prepare(const QString& address, const QString& key, const BridgeContact* keyOwner,
                        const BridgeContact* known, const QString& file)
{
    if (keyOwner) {
        const Ctl::StoredKeyUse use = Ctl::storedKeyUse(address, *keyOwner, file);
        if (!use.refusal.isEmpty()) {
            printError(use.refusal);
            return false;
        }
        m_knowledge = use.knowledge;
        m_storedKeyAdvice = use.advice;
        m_mustProbe = !sameBridgeAddress(address, keyOwner->address);
    } else if (known) {
        // What was learnt about a stored bridge holds for it, and for nothing else.
        m_knowledge = {known->transport, known->identity(), false};
    }
    m_link = std::make_unique<CtlLink>(
        BridgeContact{.address = address, .key = key, .name = known ? known->name : QString()});
    return true;
}

QString CtlBridge::label() const
{
    const BridgeContact& contact = settings().contact();
    if (!contact.name.isEmpty())
        return contact.name;
    return contact.id.isEmpty() ? contact.address : contact.id;
}

void CtlBridge::reach(QNetworkAccessManager& network, QObject* context,
                      std::function<void(bool reached)> done)
{
    // The bridge proves who it is before its key is sent: the one stored, or for an address given with
    // --bridge, any bridge whose certificate its maker signed.
    const std::optional<BridgeAddress> address = BridgeAddress::parse(settings().hueIP());
    if (!address) {
        printError(Ctl::Text::tr("The bridge address %1 is not HOST[:PORT] or https://HOST[:PORT].")
                       .arg(printable(settings().hueIP())));
        return done(false);
    }
    if (!m_mustProbe && !needsProbe(*address, m_knowledge.transport, m_knowledge.identity.bridgeId)) {
        const QString transport = address->scheme.isEmpty() ? m_knowledge.transport : address->scheme;
        settings().setBridgeContact(transport, m_knowledge.identity.bridgeId, m_knowledge.identity.pinnedKey);
        return done(true);
    }
    probeBridge(network, *address, m_knowledge, context, [this, done](const ProbeResult& result) {
        if (!result.contact) {
            printError(printable(result.problem));
            if (result.refused && !m_storedKeyAdvice.isEmpty())
                printError(m_storedKeyAdvice);
            return done(false);
        }
        settings().setHueIP(addressAfter(settings().hueIP(), *result.contact));
        settings().setBridgeContact(result.contact->transport, result.contact->bridgeId,
                                    result.contact->pinnedKey);
        done(true);
    });
}

void CtlBridge::learnInterface(QNetworkAccessManager& network, QObject* context,
                               std::function<void(bool ok)> done)
{
    askBridgeInterface(network, settings().bridgeEndpoint(), settings().hueKey(), settings().bridgeIdentity(),
                       context,
                       [this, done](std::optional<BridgeInterface> interface, const HttpResult& answer) {
                           if (answer.transportFailed) {
                               LightsResult failed;
                               failed.error = LightsError::connectionFailed;
                               failed.connectionError = answer.error;
                               failed.timedOut = answer.timedOut;
                               printError(Ctl::failedRead(settings().hueIP(), failed));
                               return done(false);
                           }
                           settings().setBridgeInterface(interface.value_or(BridgeInterface::v1));
                           done(true);
                       });
}

bool CtlBridge::overClip() const
{
    return settings().bridgeInterface() == BridgeInterface::v2;
}

Ctl::StoredKeyUse Ctl::storedKeyUse(const QString& address, const BridgeContact& stored, const QString& file)
{
    const QString& bridgeId = stored.id;
    const std::optional<BridgeAddress> given = BridgeAddress::parse(address);
    const QString where = given ? given->hostAndPort() : printable(address);
    const QString advice =
        Ctl::Text::tr(
            "The key stored in %1 goes only to bridge %2. For another bridge pass --key KEY, or pair "
            "with it: glowdeckctl pair --bridge %3")
            .arg(file, bridgeId.isEmpty() ? Ctl::Text::tr("at %1").arg(stored.address) : bridgeId,
                 printable(address));
    const bool httpsBefore = stored.transport == BridgeAddress::https;
    if (sameBridgeAddress(address, stored.address)) {
        // The bridge it was paired with, whose id an older settings file may not hold yet: the probe learns
        // it there, and only there.
        if (given && given->scheme == BridgeAddress::http && httpsBefore)
            return {{},
                    Ctl::Text::tr("Bridge %1 at %2 was paired over HTTPS; its key is not sent over plain "
                                  "HTTP.\n%3")
                        .arg(bridgeId, where, advice)};
        return {{stored.transport, stored.identity(), false}, {}, advice};
    }
    QString refusal;
    if (bridgeId.isEmpty())
        refusal = Ctl::Text::tr("%1 does not say which bridge its key belongs to, so it goes to %2 only; "
                                "the bridge at %3 cannot prove to be that bridge.")
                      .arg(file, stored.address, where);
    else if (!httpsBefore)
        refusal =
            Ctl::Text::tr("Bridge %1 was paired over plain HTTP, so its key goes to %2 only, not to %3.")
                .arg(bridgeId, stored.address, where);
    else if (given && given->scheme == BridgeAddress::http)
        refusal =
            Ctl::Text::tr("The key of bridge %1 is not sent over plain HTTP, where %2 cannot prove to be "
                          "that bridge.")
                .arg(bridgeId, where);
    if (!refusal.isEmpty())
        return {{}, refusal + u'\n' + advice, advice};
    // Another address, maybe the bridge's new one: its certificate must name the stored id.
    return {{BridgeAddress::https, stored.identity(), false}, {}, advice};
}
