#include "connection/BridgeDiscovery.h"

#include "bridge/HttpExchange.h"
#include "bridge/WireDecoder.h"
#include "connection/CommandExecuting.h"
#include "state/Console.h"

#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkInterface>

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

// Where an address was found, for the log.
const QString fromArp = QStringLiteral("the ARP table");
const QString fromMdns = QStringLiteral("an mDNS announcement");
const QString fromService = QStringLiteral("the discovery service");

/// How one search tells two found addresses apart: by scheme, host (in any case) and port.
QString sameAddressKey(const QString& address)
{
    const std::optional<BridgeAddress> parsed = BridgeAddress::parse(address);
    if (!parsed)
        return address;
    return parsed->scheme + u'|' + parsed->host.toLower() + u'|' + QString::number(parsed->port);
}

/// Whether `address` ("HOST" or "HOST:PORT", as found) is an IP address in a private, link-local or loopback
/// range that lies within one of `networks`.
bool isNearby(const QString& address, const QList<QNetworkAddressEntry>& networks)
{
    const std::optional<BridgeAddress> parsed = BridgeAddress::parse(address);
    QHostAddress host;
    // A name could lead anywhere: found bridges are named by their addresses.
    if (!parsed || !host.setAddress(parsed->host))
        return false;
    if (host.protocol() == QAbstractSocket::IPv4Protocol) {
        static const QList<QPair<QHostAddress, int>> local{
            QHostAddress::parseSubnet(QStringLiteral("10.0.0.0/8")),
            QHostAddress::parseSubnet(QStringLiteral("172.16.0.0/12")),
            QHostAddress::parseSubnet(QStringLiteral("192.168.0.0/16")),
            QHostAddress::parseSubnet(QStringLiteral("169.254.0.0/16")),
            QHostAddress::parseSubnet(QStringLiteral("127.0.0.0/8")),
        };
        if (std::none_of(local.cbegin(), local.cend(),
                         [&host](const QPair<QHostAddress, int>& range) { return host.isInSubnet(range); }))
            return false;
    } else if (!host.isLoopback() && !host.isLinkLocal() && !host.isUniqueLocalUnicast()) {
        return false;
    }
    return std::any_of(networks.cbegin(), networks.cend(), [&host](const QNetworkAddressEntry& network) {
        return network.prefixLength() >= 0 && host.isInSubnet(network.ip(), network.prefixLength());
    });
}

/// How many entries a text that starts as a JSON array lists, counted by its commas outside strings and
/// nested values, without decoding any; 0 for a text that does not start with '[' and for "[]".
qsizetype topLevelEntries(QByteArrayView text)
{
    const QByteArrayView trimmed = text.trimmed();
    if (!trimmed.startsWith('['))
        return 0;
    qsizetype commas = 0;
    int depth = 0;
    bool inString = false;
    bool escaped = false;
    bool empty = true;
    for (const char c : trimmed) {
        if (inString) {
            if (escaped)
                escaped = false;
            else if (c == '\\')
                escaped = true;
            else if (c == '"')
                inString = false;
            continue;
        }
        const bool opensList = c == '[' && depth == 0;
        if (c == '"')
            inString = true;
        else if (c == '[' || c == '{')
            ++depth;
        else if (c == ']' || c == '}')
            --depth;
        else if (c == ',' && depth == 1)
            ++commas;
        if (depth >= 1 && !opensList && c != ' ' && c != '\n' && c != '\r' && c != '\t')
            empty = false;
    }
    return empty ? 0 : commas + 1;
}

/// The address a discovery entry names: its "internalipaddress", an IP address (a stand-in service may add a
/// port of its own, which is kept), on `port`. On the usual ports the address alone lets the probe choose the
/// transport, as for announced bridges. Nothing for a name or anything else that is no IP address.
std::optional<BridgeAddress> serviceAddress(const QString& text, int port)
{
    BridgeAddress address;
    if (!QHostAddress(text).isNull()) {
        address.host = text;
    } else {
        const std::optional<BridgeAddress> parsed = BridgeAddress::parse(text);
        if (!parsed || !parsed->scheme.isEmpty() || QHostAddress(parsed->host).isNull())
            return std::nullopt;
        address = *parsed;
    }
    if (address.port < 0 && port != 443 && port != 80)
        address.port = port;
    return address;
}

/// `value` as compact JSON, cut after 200 characters: enough to recognise it in the log.
QString shortText(const QJsonValue& value)
{
    const QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(text.mid(1, text.size() - 2)).left(200);
}

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
    const std::shared_ptr<Candidates> search = newSearch();
    readArpTable([this, search, done = std::move(done)](const QString& table) mutable {
        const QStringList nearby = admit(*search, bridgeAddressesFromArpTable(table), fromArp);
        if (!nearby.isEmpty()) {
            printLine(QStringLiteral("HueHelper: Bridge IP detected via ARP: ") + nearby.first());
            return done(nearby.first());
        }
        browseLocalNetwork(search, std::move(done));
    });
}

QList<QNetworkAddressEntry> BridgeDiscovery::interfaceNetworks()
{
    QList<QNetworkAddressEntry> networks;
    for (const QNetworkInterface& interface : QNetworkInterface::allInterfaces()) {
        if (interface.flags().testFlag(QNetworkInterface::IsUp))
            networks += interface.addressEntries();
    }
    return networks;
}

std::shared_ptr<BridgeDiscovery::Candidates> BridgeDiscovery::newSearch() const
{
    auto search = std::make_shared<Candidates>();
    // Read at every search: a laptop joins other networks.
    if (m_ownNetworks)
        search->networks = m_ownNetworks();
    return search;
}

QStringList BridgeDiscovery::admit(Candidates& search, const QStringList& found, const QString& source)
{
    QStringList admitted;
    for (const QString& address : found) {
        const QString key = sameAddressKey(address);
        if (search.seen.contains(key))
            continue;
        search.seen.insert(key);
        if (!isNearby(address, search.networks)) {
            // The same announcement comes back at every search: said once.
            if (!m_toldSkipped.contains(key)) {
                m_toldSkipped.insert(key);
                printLine(QStringLiteral("Bridge discovery: not asking %1, named by %2: it is not on a local "
                                         "network of this computer.")
                              .arg(address, source));
            }
            continue;
        }
        search.addresses.append(address);
        admitted.append(address);
    }
    return admitted;
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
    const std::shared_ptr<Candidates> search = newSearch();
    const auto askTheService = [this, search, paired](std::function<void(QList<FoundBridge>)> done) {
        askService([this, search, paired, done = std::move(done)](const QStringList& addresses) mutable {
            admit(*search, addresses, fromService);
            identifyAll(search->addresses, paired, std::move(done));
        });
    };
    readArpTable([this, search, askTheService, done = std::move(done)](const QString& table) mutable {
        admit(*search, bridgeAddressesFromArpTable(table), fromArp);
        if (!m_browser)
            return askTheService(std::move(done));
        m_browser->browse(browseLimit, [this, search, askTheService, done = std::move(done)](
                                           const QList<LocalNetworkBrowser::Found>& announced) mutable {
            QStringList addresses;
            for (const LocalNetworkBrowser::Found& bridge : announced)
                addresses.append(addressOf(bridge));
            admit(*search, addresses, fromMdns);
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
    // this id, the ARP table, the service. An address asked in one stage is not asked again in the next.
    const std::shared_ptr<Candidates> search = newSearch();
    const auto serviceStage = [this, known, search](std::function<void(std::optional<Whereabouts>)> done) {
        askService([this, known, search, done = std::move(done)](const QStringList& addresses) mutable {
            tryCandidates(admit(*search, addresses, fromService), known, std::move(done));
        });
    };
    const auto arpStage = [this, known, search,
                           serviceStage](std::function<void(std::optional<Whereabouts>)> done) {
        readArpTable([this, known, search, serviceStage,
                      done = std::move(done)](const QString& table) mutable {
            tryCandidates(admit(*search, bridgeAddressesFromArpTable(table), fromArp), known,
                          [serviceStage, done = std::move(done)](std::optional<Whereabouts> found) mutable {
                              if (found)
                                  return done(std::move(found));
                              serviceStage(std::move(done));
                          });
        });
    };
    if (!m_browser)
        return arpStage(std::move(done));
    m_browser->browse(browseLimit, [this, known, search, arpStage, done = std::move(done)](
                                       const QList<LocalNetworkBrowser::Found>& announced) mutable {
        QStringList candidates;
        for (const LocalNetworkBrowser::Found& bridge : announced) {
            if (bridge.bridgeId.isEmpty() ||
                bridge.bridgeId.compare(known.identity.bridgeId, Qt::CaseInsensitive) == 0)
                candidates.append(addressOf(bridge));
        }
        tryCandidates(admit(*search, candidates, fromMdns), known,
                      [arpStage, done = std::move(done)](std::optional<Whereabouts> found) mutable {
                          if (found)
                              return done(std::move(found));
                          arpStage(std::move(done));
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

QStringList BridgeDiscovery::bridgeAddressesFromServiceAnswer(const QByteArray& answer, QStringList* problems)
{
    const auto say = [problems](const QString& problem) {
        if (problems)
            problems->append(problem);
    };
    // Counted before anything is decoded: a long list costs no more than reading its bytes once.
    if (const qsizetype listed = topLevelEntries(answer); std::size_t(listed) > WireDecoder::maxListMembers) {
        say(QStringLiteral("the discovery service lists %1 bridges, more than the %2 a network can hold; the "
                           "answer was refused.")
                .arg(listed)
                .arg(WireDecoder::maxListMembers));
        return {};
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(answer, &error);
    if (error.error != QJsonParseError::NoError || (!document.isObject() && !document.isArray())) {
        say(QStringLiteral("the discovery service's answer is no list of bridges; no bridge read from it."));
        return {};
    }
    // An older form of the answer names its one bridge in an object of its own.
    const QJsonArray entries = document.isObject() ? QJsonArray{document.object()} : document.array();
    QStringList addresses;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const QJsonObject entry = entries.at(i).toObject();
        const QJsonValue id = entry.value(u"id");
        const QJsonValue address = entry.value(u"internalipaddress");
        const QJsonValue port = entry.value(u"port");
        const auto absent = [](const QJsonValue& v) { return v.isUndefined() || v.isNull(); };
        const double number = port.toDouble();
        const bool portIsUsable = absent(port) || (port.isDouble() && std::trunc(number) == number &&
                                                   number >= 1 && number <= 65535);
        const std::optional<BridgeAddress> found =
            address.isString() && portIsUsable
                ? serviceAddress(address.toString(), absent(port) ? 443 : int(number))
                : std::nullopt;
        if (!entries.at(i).isObject() || !(absent(id) || id.isString()) || !found) {
            say(QStringLiteral("entry %1 of the discovery service's answer is no bridge's address and port; "
                               "passed over: %2")
                    .arg(i + 1)
                    .arg(shortText(entries.at(i))));
            continue;
        }
        addresses.append(found->hostAndPort());
    }
    return addresses;
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

void BridgeDiscovery::browseLocalNetwork(std::shared_ptr<Candidates> search,
                                         std::function<void(std::optional<QString>)> done)
{
    const auto askTheService = [this, search](std::function<void(std::optional<QString>)> done) {
        askService([this, search, done = std::move(done)](const QStringList& addresses) {
            const QStringList nearby = admit(*search, addresses, fromService);
            done(nearby.isEmpty() ? std::nullopt : std::optional(nearby.first()));
        });
    };
    if (!m_browser)
        return askTheService(std::move(done));
    m_browser->browse(browseLimit, [this, search, askTheService, done = std::move(done)](
                                       const QList<LocalNetworkBrowser::Found>& announced) mutable {
        QStringList addresses;
        for (const LocalNetworkBrowser::Found& bridge : announced)
            addresses.append(addressOf(bridge));
        const QStringList nearby = admit(*search, addresses, fromMdns);
        if (nearby.isEmpty())
            return askTheService(std::move(done));
        printLine(QStringLiteral("HueHelper: Bridge IP detected via mDNS: ") + nearby.first());
        done(nearby.first());
    });
}

void BridgeDiscovery::askService(std::function<void(QStringList)> done)
{
    if (m_serviceUrl.isEmpty() || !m_serviceUrl.isValid()) {
        QMetaObject::invokeMethod(
            this, [done = std::move(done)] { done({}); }, Qt::QueuedConnection);
        return;
    }
    fetchString(m_serviceUrl, [done = std::move(done)](const std::optional<QString>& reply) {
        if (!reply || reply->isEmpty())
            return done({});
        QStringList problems;
        const QStringList addresses = bridgeAddressesFromServiceAnswer(reply->toUtf8(), &problems);
        for (const QString& problem : std::as_const(problems))
            printLine(QStringLiteral("Bridge discovery: ") + problem);
        done(addresses);
    });
}
