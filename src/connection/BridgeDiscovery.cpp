#include "connection/BridgeDiscovery.h"

#include "bridge/HttpExchange.h"
#include "connection/CommandExecuting.h"
#include "state/Console.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

// The bridge maker's hardware-address prefixes as arp prints them: 00:17:88 without leading zeros, and
// c4:29:96, which the newest bridge model carries. Matched as plain text anywhere in the line.
constexpr QStringView huePrefix = u"0:17:88";
constexpr QStringView newestBridgePrefix = u"c4:29:96";

// The service answers in well under a second; nothing of ours waits longer than the longest exchange.
constexpr HttpTimeouts serviceTimeouts{std::chrono::seconds(10), longestExchange};

} // namespace

QUrl BridgeDiscovery::defaultServiceUrl()
{
    if (qEnvironmentVariableIsSet("GLOWDECK_DISCOVERY_URL"))
        return QUrl(qEnvironmentVariable("GLOWDECK_DISCOVERY_URL"));
    return QUrl(QStringLiteral("https://discovery.meethue.com/"));
}

BridgeDiscovery::BridgeDiscovery(CommandExecuting& commands, QNetworkAccessManager& network, QObject* parent)
    : QObject(parent), m_commands(commands), m_network(network)
{}

void BridgeDiscovery::detectBridgeIP(std::function<void(std::optional<QString>)> done)
{
    readArpTable([this, done = std::move(done)](const QString& table) mutable {
        if (std::optional<QString> address = bridgeAddressFromArpTable(table)) {
            printLine(QStringLiteral("HueHelper: Bridge IP detected via ARP: ") + *address);
            return done(address);
        }
        browseLocalNetwork(std::move(done));
    });
}

QString BridgeDiscovery::defaultArpCommand()
{
    if (qEnvironmentVariableIsSet("GLOWDECK_ARP_COMMAND"))
        return qEnvironmentVariable("GLOWDECK_ARP_COMMAND");
    return QStringLiteral("arp");
}

void BridgeDiscovery::readArpTable(std::function<void(QString)> done)
{
    if (m_arpCommand.isEmpty()) {
        QMetaObject::invokeMethod(
            this, [done = std::move(done)] { done(QString()); }, Qt::QueuedConnection);
        return;
    }
    m_commands.resolveCommandPath(
        m_arpCommand, [this, done = std::move(done)](CommandExecuting::PathResult path) mutable {
            if (std::holds_alternative<BashError>(path))
                return done(QString());
            // Numeric output: a plain "arp" would look every address up in the DNS first.
            m_commands.runCommand(std::get<QString>(path), {QStringLiteral("-na")}, std::move(done));
        });
}

void BridgeDiscovery::detectBridges(const ProbeKnowledge& paired,
                                    std::function<void(QList<FoundBridge>)> done)
{
    auto candidates = std::make_shared<QStringList>();
    const auto add = [candidates](const QString& address) {
        if (!candidates->contains(address))
            candidates->append(address);
    };
    const auto askTheService = [this, candidates, add, paired](std::function<void(QList<FoundBridge>)> done) {
        askService([this, candidates, add, paired,
                    done = std::move(done)](const std::optional<QString>& address) mutable {
            if (address)
                add(*address);
            identifyAll(*candidates, paired, std::move(done));
        });
    };
    readArpTable([this, add, askTheService, done = std::move(done)](const QString& table) mutable {
        for (const QString& address : bridgeAddressesFromArpTable(table))
            add(address);
        if (!m_browser)
            return askTheService(std::move(done));
        m_browser->browse(browseLimit, [add, askTheService, done = std::move(done)](
                                           const QList<LocalNetworkBrowser::Found>& announced) mutable {
            for (const LocalNetworkBrowser::Found& bridge : announced)
                add(addressOf(bridge));
            askTheService(std::move(done));
        });
    });
}

void BridgeDiscovery::identifyAll(const QStringList& addresses, const ProbeKnowledge& paired,
                                  std::function<void(QList<FoundBridge>)> done)
{
    struct Answer
    {
        FoundBridge bridge;
        bool overHttps = false;
    };
    struct Gathering
    {
        QList<std::optional<Answer>> answers; // in the order of the addresses
        int pending = 0;
        std::function<void(QList<FoundBridge>)> done;
    };
    auto gathering = std::make_shared<Gathering>();
    gathering->answers.resize(addresses.size());
    gathering->done = std::move(done);
    // Over plain HTTP anybody can claim the paired bridge's id; the paired bridge itself speaks HTTPS.
    const QString pairedOverHttps =
        paired.transport == BridgeAddress::https ? paired.identity.bridgeId : QString();
    const auto finishIfAllAnswered = [gathering, pairedOverHttps] {
        if (gathering->pending > 0 || !gathering->done)
            return;
        QList<Answer> kept;
        for (const std::optional<Answer>& answer : gathering->answers) {
            if (!answer || (!answer->overHttps && !pairedOverHttps.isEmpty() &&
                            answer->bridge.bridgeId.compare(pairedOverHttps, Qt::CaseInsensitive) == 0))
                continue;
            const auto same = std::find_if(kept.begin(), kept.end(), [&](const Answer& a) {
                return a.bridge.bridgeId == answer->bridge.bridgeId;
            });
            if (same == kept.end())
                kept.append(*answer);
            else if (answer->overHttps && !same->overHttps)
                *same = *answer; // the one that proved the id, in the place of the first
        }
        QList<FoundBridge> bridges;
        for (const Answer& answer : kept)
            bridges.append(answer.bridge);
        std::exchange(gathering->done, {})(bridges);
    };
    for (qsizetype i = 0; i < addresses.size(); ++i) {
        const std::optional<BridgeAddress> address = BridgeAddress::parse(addresses.at(i));
        if (!address)
            continue;
        ++gathering->pending;
        // Nothing is known yet: any bridge may answer (a self-signed one too); no key goes anywhere.
        probeBridge(m_network, *address, ProbeKnowledge{{}, {}, true}, this,
                    [gathering, i, given = addresses.at(i), finishIfAllAnswered](const ProbeResult& result) {
                        if (result.contact)
                            gathering->answers[i] = Answer{{addressAfter(given, *result.contact),
                                                            result.contact->name, result.contact->bridgeId},
                                                           result.contact->transport == BridgeAddress::https};
                        --gathering->pending;
                        finishIfAllAnswered();
                    });
    }
    if (gathering->pending == 0)
        QMetaObject::invokeMethod(this, finishIfAllAnswered, Qt::QueuedConnection);
}

void BridgeDiscovery::findBridge(const ProbeKnowledge& known,
                                 std::function<void(std::optional<Whereabouts>)> done)
{
    // Stage by stage, each only when the one before found nothing: the local network's announcements of
    // this id, the ARP table, the service.
    const auto fromService = [this, known](std::function<void(std::optional<Whereabouts>)> done) {
        askService([this, known, done = std::move(done)](const std::optional<QString>& address) mutable {
            tryCandidates(address ? QStringList{*address} : QStringList(), known, std::move(done));
        });
    };
    const auto fromArp = [this, known, fromService](std::function<void(std::optional<Whereabouts>)> done) {
        readArpTable([this, known, fromService, done = std::move(done)](const QString& table) mutable {
            tryCandidates(bridgeAddressesFromArpTable(table), known,
                          [fromService, done = std::move(done)](std::optional<Whereabouts> found) mutable {
                              if (found)
                                  return done(std::move(found));
                              fromService(std::move(done));
                          });
        });
    };
    if (!m_browser)
        return fromArp(std::move(done));
    m_browser->browse(browseLimit, [this, known, fromArp, done = std::move(done)](
                                       const QList<LocalNetworkBrowser::Found>& announced) mutable {
        QStringList candidates;
        for (const LocalNetworkBrowser::Found& bridge : announced) {
            if (bridge.bridgeId.isEmpty() ||
                bridge.bridgeId.compare(known.identity.bridgeId, Qt::CaseInsensitive) == 0)
                candidates.append(addressOf(bridge));
        }
        tryCandidates(candidates, known,
                      [fromArp, done = std::move(done)](std::optional<Whereabouts> found) mutable {
                          if (found)
                              return done(std::move(found));
                          fromArp(std::move(done));
                      });
    });
}

void BridgeDiscovery::tryCandidates(QStringList candidates, const ProbeKnowledge& known,
                                    std::function<void(std::optional<Whereabouts>)> done)
{
    std::optional<BridgeAddress> address;
    while (!candidates.isEmpty() && !(address = BridgeAddress::parse(candidates.first())))
        candidates.removeFirst();
    if (!address) {
        QMetaObject::invokeMethod(
            this, [done = std::move(done)] { done(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    const QString candidate = candidates.takeFirst();
    probeBridge(
        m_network, *address, known, this,
        [this, candidate, candidates, known, done = std::move(done)](const ProbeResult& result) mutable {
            if (result.contact)
                return done(Whereabouts{addressAfter(candidate, *result.contact), *result.contact});
            tryCandidates(std::move(candidates), known, std::move(done));
        });
}

std::optional<QString> BridgeDiscovery::bridgeAddressFromArpTable(const QString& arpOutput)
{
    const QStringList addresses = bridgeAddressesFromArpTable(arpOutput);
    if (addresses.isEmpty())
        return std::nullopt;
    return addresses.first();
}

QStringList BridgeDiscovery::bridgeAddressesFromArpTable(const QString& arpOutput)
{
    QStringList addresses;
    // A line reads "? (192.168.1.20) at 0:17:88:a1:b2:c3 on en0 ifscope [ethernet]" (macOS) or
    // "? (192.168.1.20) at 00:17:88:a1:b2:c3 [ether] on eth0" (Linux): the address is between the
    // parentheses.
    for (const QString& line : arpOutput.split(u'\n', Qt::SkipEmptyParts)) {
        if (!line.contains(huePrefix) && !line.contains(newestBridgePrefix, Qt::CaseInsensitive))
            continue;
        const QStringList afterOpening = line.split(u'(', Qt::SkipEmptyParts);
        if (afterOpening.size() < 2)
            continue; // not arp's usual shape; nothing to read from it
        const QStringList inside = afterOpening.at(1).split(u')', Qt::SkipEmptyParts);
        if (inside.isEmpty())
            continue;
        const QString address = inside.first();
        if (address.split(u'.').size() == 4 && !addresses.contains(address.trimmed()))
            addresses.append(address.trimmed());
    }
    return addresses;
}

QString BridgeDiscovery::addressOf(const LocalNetworkBrowser::Found& found)
{
    const bool usualPort = found.port == 443 || found.port == 80 || found.port == 0;
    return usualPort ? found.address : QStringLiteral("%1:%2").arg(found.address).arg(found.port);
}

std::optional<QString> BridgeDiscovery::bridgeAddressFromServiceAnswer(const QByteArray& answer)
{
    // One object only: an array (the service's answer when it knows several bridges) does not decode.
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(answer, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    const QJsonValue id = object.value(u"id");
    const QJsonValue address = object.value(u"internalipaddress");
    const QJsonValue port = object.value(u"port");
    const auto isText = [](const QJsonValue& v) { return v.isUndefined() || v.isNull() || v.isString(); };
    const bool portIsInteger = port.isUndefined() || port.isNull() ||
                               (port.isDouble() && std::trunc(port.toDouble()) == port.toDouble());
    if (!isText(id) || !isText(address) || !portIsInteger || !address.isString())
        return std::nullopt;
    return address.toString();
}

void BridgeDiscovery::fetchString(const QUrl& url, std::function<void(std::optional<QString>)> done)
{
    sendHttpRequest(m_network, QNetworkRequest(url), QByteArrayLiteral("GET"), {}, serviceTimeouts,
                    [done = std::move(done)](const HttpResult& answer) {
                        if (answer.transportFailed || answer.tooLarge)
                            return done(std::nullopt);
                        done(QString::fromUtf8(answer.body));
                    });
}

void BridgeDiscovery::browseLocalNetwork(std::function<void(std::optional<QString>)> done)
{
    if (!m_browser)
        return askService(std::move(done));
    m_browser->browse(browseLimit, [this, done = std::move(done)](
                                       const QList<LocalNetworkBrowser::Found>& announced) mutable {
        if (announced.isEmpty())
            return askService(std::move(done));
        const QString address = addressOf(announced.first());
        printLine(QStringLiteral("HueHelper: Bridge IP detected via mDNS: ") + address);
        done(address);
    });
}

void BridgeDiscovery::askService(std::function<void(std::optional<QString>)> done)
{
    if (m_serviceUrl.isEmpty() || !m_serviceUrl.isValid()) {
        QMetaObject::invokeMethod(
            this, [done = std::move(done)] { done(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    fetchString(m_serviceUrl, [done = std::move(done)](const std::optional<QString>& reply) {
        if (!reply || reply->isEmpty())
            return done(std::nullopt);
        done(bridgeAddressFromServiceAnswer(reply->toUtf8()));
    });
}
