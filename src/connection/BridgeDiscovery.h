#pragma once

#include "connection/BridgeProbe.h"
#include "connection/LocalNetworkBrowser.h"

#include <QNetworkAddressEntry>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

class CommandExecuting;
class QNetworkAccessManager;

/// What the bridge discovery service says about one bridge; every field may be missing.
struct HueDiscoveryBridgeDetails
{
    std::optional<QString> id;
    std::optional<QString> internalipaddress;
    std::optional<qint64> port;
};

/// Finds a Hue bridge on the local network without the user typing its address: first in the computer's ARP
/// table (by the maker's hardware prefix), then among the bridges announced on the local network (mDNS), then
/// through the public discovery service.
///
/// Anybody on the network can announce anything, and the service answers from afar: an address found is only
/// taken, or asked who it is, when it lies in a private (10/8, 172.16/12, 192.168/16), link-local
/// (169.254/16) or loopback range and within one of this computer's own networks. One search asks each
/// address once, however many sources name it; an address passed over is said once in the log.
class BridgeDiscovery final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BridgeDiscovery)

public:
    /// Philips' public discovery service. Overridden by GLOWDECK_DISCOVERY_URL (tests point it at loopback;
    /// an empty value switches the service off).
    static QUrl defaultServiceUrl();

    BridgeDiscovery(CommandExecuting& commands, QNetworkAccessManager& network, QObject* parent = nullptr);

    /// The program that prints the ARP table: "arp", or GLOWDECK_ARP_COMMAND when set (empty switches the
    /// ARP step off: tests send nothing to a bridge a developer's table may hold).
    static QString defaultArpCommand();
    void setArpCommand(const QString& name) { m_arpCommand = name; }

    /// An empty URL switches the service off: only the ARP table is looked at.
    void setServiceUrl(const QUrl& url) { m_serviceUrl = url; }
    QUrl serviceUrl() const { return m_serviceUrl; }
    /// The local network's mDNS browser, asked between the ARP table and the service; none skips that step.
    void setLocalNetworkBrowser(LocalNetworkBrowser* browser) { m_browser = browser; }
    /// How long the local network is browsed before the service is asked.
    static constexpr std::chrono::seconds browseLimit{3};

    /// The networks of this computer's interfaces that are up, as their addresses and prefix lengths give
    /// them (loopback included).
    static QList<QNetworkAddressEntry> interfaceNetworks();
    /// Where this computer's own networks are read from at every search; interfaceNetworks() unless a test
    /// sets its own.
    void setOwnNetworks(std::function<QList<QNetworkAddressEntry>()> networks)
    {
        m_ownNetworks = std::move(networks);
    }

    /// Looks for a bridge and answers once with its address, or nothing. Prints
    /// "HueHelper: Bridge IP detected via ARP: <address>" when the ARP table had it, and "… via mDNS: …" when
    /// the local network announced it.
    void detectBridgeIP(std::function<void(std::optional<QString>)> done);

    /// A bridge on the network, as its own configuration names it.
    struct FoundBridge
    {
        QString address;
        QString name;
        QString bridgeId;
        bool operator==(const FoundBridge&) const = default;
    };
    /// Every bridge the ARP table, the local network and the service name, each asked who it is (its public
    /// configuration, no key; over HTTPS its certificate must be a bridge's), merged by bridge id, in the
    /// order of those steps. An address that does not answer as a bridge is left out. Of two answers with
    /// one id, one that proved it over HTTPS wins, since anybody can claim an id over plain HTTP; a plain
    /// claim of the id of `paired`, a bridge known over HTTPS, is no bridge at all.
    void detectBridges(const ProbeKnowledge& paired, std::function<void(QList<FoundBridge>)> done);
    void detectBridges(std::function<void(QList<FoundBridge>)> done) { detectBridges({}, std::move(done)); }

    /// Where a bridge answers now and how it was reached.
    struct Whereabouts
    {
        QString address;
        ProbedBridge contact;
    };
    /// Looks for the bridge `known` names (it must carry a bridge id) at new addresses: those the local
    /// network announces for its id, then every address the ARP table gives the maker's prefixes, then the
    /// service's. Each is asked who it is (BridgeProbe, no key sent) and counts only when it proves the known
    /// identity. Answers once, with the first that does, or nothing.
    void findBridge(const ProbeKnowledge& known, std::function<void(std::optional<Whereabouts>)> done);

    /// The first line of `arp -na` output whose text contains a bridge prefix ("0:17:88", or "c4:29:96" in
    /// any case for the newest model) and whose address between the parentheses has four dotted parts; lines
    /// of another shape are passed over.
    static std::optional<QString> bridgeAddressFromArpTable(const QString& arpOutput);
    /// Every such address, in the table's order, each once.
    static QStringList bridgeAddressesFromArpTable(const QString& arpOutput);
    /// The address to keep for an announced bridge: on its usual ports the address alone lets the probe
    /// choose the transport; on another port, "address:port".
    static QString addressOf(const LocalNetworkBrowser::Found& found);
    /// Every bridge a discovery answer lists, in its order: the service answers a JSON array of
    /// {"id","internalipaddress","port"} objects, one per bridge of the network (a single object is read as
    /// a list of one). An entry on a port other than 443 or 80 gives "address:port", else the address alone.
    /// An entry that is not such an object, or whose address is not an IP address, is passed over; an answer
    /// that is no JSON, or lists more entries than a bridge list may hold, gives nothing. Each of those says
    /// why in `problems`, when given.
    static QStringList bridgeAddressesFromServiceAnswer(const QByteArray& answer,
                                                        QStringList* problems = nullptr);

    /// GET `url` and hand over the body as UTF-8 text; nothing on a transport failure.
    void fetchString(const QUrl& url, std::function<void(std::optional<QString>)> done);

private:
    /// The addresses of one search: the nearby ones found so far, each once.
    struct Candidates
    {
        QList<QNetworkAddressEntry> networks;
        QStringList addresses;
        QSet<QString> seen; ///< as BridgeAddress tells them apart, so "Host" and "host" are one
    };
    /// Starts a search: this computer's networks as they are now.
    std::shared_ptr<Candidates> newSearch() const;
    /// Those of `found` (named by `source`, for the log) that `search` has not had yet and that are nearby;
    /// each is added to `search`.
    QStringList admit(Candidates& search, const QStringList& found, const QString& source);

    void browseLocalNetwork(std::shared_ptr<Candidates> search,
                            std::function<void(std::optional<QString>)> done);
    /// The ARP table's text, or an empty one when there is no arp.
    void readArpTable(std::function<void(QString)> done);
    /// Asks every address at once who it is; answers with those that are bridges, merged by bridge id.
    void identifyAll(const QStringList& addresses, const ProbeKnowledge& paired,
                     std::function<void(QList<FoundBridge>)> done);
    /// Probes `candidates` one after another; answers with the first that proves `known`, or nothing.
    void tryCandidates(QStringList candidates, const ProbeKnowledge& known,
                       std::function<void(std::optional<Whereabouts>)> done);
    /// The addresses the discovery service lists, none when it is off, silent or unreadable.
    void askService(std::function<void(QStringList)> done);

    CommandExecuting& m_commands;
    QNetworkAccessManager& m_network;
    QUrl m_serviceUrl = defaultServiceUrl();
    QString m_arpCommand = defaultArpCommand();
    LocalNetworkBrowser* m_browser = nullptr;
    std::function<QList<QNetworkAddressEntry>()> m_ownNetworks = &BridgeDiscovery::interfaceNetworks;
    /// The addresses passed over and said so in the log: once is enough.
    QSet<QString> m_toldSkipped;
};
