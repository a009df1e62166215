#include "CountingNetwork.h"
#include "FakeCommands.h"
#include "FakeLocalNetwork.h"
#include "LoopbackServer.h"
#include "TestSupport.h"
#include "connection/BridgeDiscovery.h"
#include "simulator/BridgeSimulator.h"

#include <QNetworkAccessManager>
#include <QSet>
#include <QTest>

#include <memory>

namespace {

const QString bridgeLine = QStringLiteral("? (192.168.1.20) at 0:17:88:a1:b2:c3 on en0 ifscope [ethernet]");
const QString routerLine = QStringLiteral("? (192.168.1.1) at a4:2b:b0:11:22:33 on en0 ifscope [ethernet]");
const QString nothing = QStringLiteral("<nothing>");

QString shown(const std::optional<QString>& address)
{
    return address.value_or(nothing);
}

} // namespace

class TestBridgeDiscovery final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void findsTheBridgeInTheArpTable_data();
    void findsTheBridgeInTheArpTable();
    void readsEveryBridgeTheServiceLists_data();
    void readsEveryBridgeTheServiceLists();
    void asksEveryBridgeTheServiceLists_data();
    void asksEveryBridgeTheServiceLists();
    void asksTheArpTableFirstAndThenTheService_data();
    void asksTheArpTableFirstAndThenTheService();
    void browsesTheLocalNetworkBetweenTheArpTableAndTheService_data();
    void browsesTheLocalNetworkBetweenTheArpTableAndTheService();
    void asksOnlyAddressesOnItsOwnNetworksEachOncePerSearch_data();
    void asksOnlyAddressesOnItsOwnNetworksEachOncePerSearch();
    void anIdClaimedInClearNeverHidesTheBridgeThatProvedIt_data();
    void anIdClaimedInClearNeverHidesTheBridgeThatProvedIt();

private:
    /// Runs one detection to its answer.
    std::optional<QString> detect();

    std::unique_ptr<FakeCommands> m_commands;
    std::unique_ptr<CountingNetwork> m_network;
    std::unique_ptr<LoopbackServer> m_service;
    std::unique_ptr<BridgeDiscovery> m_discovery;
};

void TestBridgeDiscovery::init()
{
    m_commands = std::make_unique<FakeCommands>();
    m_network = std::make_unique<CountingNetwork>();
    m_service = std::make_unique<LoopbackServer>();
    QVERIFY(m_service->listen());
    m_service->setAnswer(R"({"id":"001788fffe0a0b0c","internalipaddress":"192.168.1.77","port":443})");
    m_discovery = std::make_unique<BridgeDiscovery>(*m_commands, *m_network);
    m_discovery->setArpCommand(QStringLiteral("arp")); // the fake table
    m_discovery->setServiceUrl(m_service->url());
    m_discovery->setOwnNetworks([] { return ownNetworks({u"127.0.0.1/8"_qs, u"192.168.1.10/24"_qs}); });
}

void TestBridgeDiscovery::cleanup()
{
    m_discovery.reset();
    m_service.reset();
    m_network.reset();
    m_commands.reset();
}

std::optional<QString> TestBridgeDiscovery::detect()
{
    auto answers = std::make_shared<QList<std::optional<QString>>>();
    m_discovery->detectBridgeIP([answers](std::optional<QString> address) { answers->append(address); });
    if (!QTest::qWaitFor([&] { return !answers->isEmpty(); }, 10000))
        return QStringLiteral("<no answer>");
    return answers->first();
}

void TestBridgeDiscovery::findsTheBridgeInTheArpTable_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("address");

    const QString lines = QStringLiteral("%1\n%2");
    QTest::newRow("macOS line") << bridgeLine << "192.168.1.20";
    QTest::newRow("Linux line") << "? (192.168.1.20) at 00:17:88:a1:b2:c3 [ether] on eth0"
                                << "192.168.1.20";
    QTest::newRow("another maker") << routerLine << nothing;
    QTest::newRow("the newest model's prefix") << "? (192.168.1.23) at c4:29:96:0a:1b:2c [ether] on wlan0"
                                               << "192.168.1.23";
    QTest::newRow("prefix inside a longer byte") << "? (10.0.0.5) at 10:17:88:aa:bb:cc on en0"
                                                 << "10.0.0.5";
    QTest::newRow("prefix at the end") << "? (10.0.0.6) at aa:bb:cc:00:17:88 on en0"
                                       << "10.0.0.6";
    QTest::newRow("two bridges: first in output")
        << lines.arg(bridgeLine, "? (192.168.1.21) at 0:17:88:0:0:1 on en0") << "192.168.1.20";
    QTest::newRow("incomplete entry skipped")
        << lines.arg("? (incomplete) at 0:17:88:0:0:9 on en0", bridgeLine) << "192.168.1.20";
    QTest::newRow("IPv6 entry skipped")
        << lines.arg("? (fe80::1) at 0:17:88:0:0:9 on en0", bridgeLine) << "192.168.1.20";
    QTest::newRow("five dotted parts") << "? (192.168.1.20.5) at 0:17:88:a1:b2:c3 on en0" << nothing;
    QTest::newRow("no parenthesis, then a bridge")
        << lines.arg("bridge at 0:17:88:a1:b2:c3", bridgeLine) << "192.168.1.20";
    QTest::newRow("empty lines around") << "\n\n" + bridgeLine + "\n\n"
                                        << "192.168.1.20";
    QTest::newRow("spaces inside the parentheses") << "? ( 192.168.1.20 ) at 0:17:88:a1:b2:c3"
                                                   << "192.168.1.20";
    // arp always starts a line with the host name or "?": a line opening on the parenthesis is not its shape.
    QTest::newRow("parenthesis first on the line is passed over")
        << "(192.168.1.20) at 0:17:88:a1:b2:c3\n? (192.168.1.30) at 0:17:88:a1:b2:c4"
        << "192.168.1.30";
    QTest::newRow("empty output") << "" << nothing;
}

void TestBridgeDiscovery::findsTheBridgeInTheArpTable()
{
    QFETCH(QString, output);
    QFETCH(QString, address);
    QCOMPARE(shown(BridgeDiscovery::bridgeAddressFromArpTable(output)), address);
}

void TestBridgeDiscovery::readsEveryBridgeTheServiceLists_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QStringList>("addresses");
    QTest::addColumn<QString>("problem"); // a part of the one message, or empty for none
    const auto row = [](const char* name, const char* answer, const QStringList& addresses,
                        const char* problem = "") {
        QTest::newRow(name) << QByteArray(answer) << addresses << problem;
    };

    row("two bridges", R"([{"id":"001788fffe0a0b0c","internalipaddress":"192.168.1.20","port":443},
                           {"id":"001788fffe0d0e0f","internalipaddress":"192.168.1.21","port":443}])",
        {"192.168.1.20", "192.168.1.21"});
    row("one object, as before", R"({"id":"x","internalipaddress":"192.168.1.20","port":443})",
        {"192.168.1.20"});
    row("a port of its own", R"([{"internalipaddress":"192.168.1.20","port":8443}])", {"192.168.1.20:8443"});
    row("port 80, no port",
        R"([{"internalipaddress":"192.168.1.20","port":80},{"internalipaddress":"10.0.0.2"}])",
        {"192.168.1.20", "10.0.0.2"});
    row("IPv6 on its own port", R"([{"internalipaddress":"fe80::1","port":8080}])", {"[fe80::1]:8080"});
    row("an address that names its port", R"([{"internalipaddress":"127.0.0.1:8080","port":443}])",
        {"127.0.0.1:8080"});
    row("an empty list", "[]", {});
    const char* entry =
        "entry 2 of the discovery service's answer is no bridge's address and port; passed over";
    row("a malformed entry between two", R"([{"internalipaddress":"192.168.1.20"},{"internalipaddress":192},
                                             {"internalipaddress":"192.168.1.21"}])",
        {"192.168.1.20", "192.168.1.21"}, entry);
    row("no address", R"([{"id":"x","port":443}])", {}, "entry 1 of");
    row("port as text",
        R"([{"internalipaddress":"192.168.1.20"},{"internalipaddress":"192.168.1.21","port":"443"}])",
        {"192.168.1.20"}, entry);
    row("port beyond 65535",
        R"([{"internalipaddress":"192.168.1.20"},{"internalipaddress":"192.168.1.21","port":70000}])",
        {"192.168.1.20"}, entry);
    row("a name, not an address",
        R"([{"internalipaddress":"192.168.1.20"},{"internalipaddress":"bridge.example"}])", {"192.168.1.20"},
        entry);
    row("an address with a scheme",
        R"([{"internalipaddress":"192.168.1.20"},{"internalipaddress":"https://192.168.1.21"}])",
        {"192.168.1.20"}, entry);
    row("a list in the list", R"([{"internalipaddress":"192.168.1.20"},["192.168.1.21"]])", {"192.168.1.20"},
        entry);
    row("id as number",
        R"([{"internalipaddress":"192.168.1.20"},{"id":7,"internalipaddress":"192.168.1.21"}])",
        {"192.168.1.20"}, entry);
    row("empty", "", {}, "no list of bridges");
    row("garbage", "<html>busy</html>", {}, "no list of bridges");
    row("a number", "443", {}, "no list of bridges");
    // Counted before decoding: commas inside texts and nested values are no entries.
    QByteArray full = "[";
    for (int i = 0; i < 1000; ++i)
        full += R"({"id":"a\",[b,","internalipaddress":"192.168.1.20","x":[1,{"y":2}]},)";
    full.back() = ']';
    QTest::newRow("1000 entries") << full << QStringList(1000, "192.168.1.20") << "";
    QTest::newRow("more than 1000 entries")
        << full.chopped(1) + R"(,{"internalipaddress":"192.168.1.21"}])" << QStringList()
        << "lists 1001 bridges, more than the 1000 a network can hold";
}

void TestBridgeDiscovery::readsEveryBridgeTheServiceLists()
{
    QFETCH(QByteArray, answer);
    QFETCH(QStringList, addresses);
    QFETCH(QString, problem);
    QStringList problems;
    QCOMPARE(BridgeDiscovery::bridgeAddressesFromServiceAnswer(answer, &problems), addresses);
    QCOMPARE(problems.size(), problem.isEmpty() ? 0 : 1);
    if (!problem.isEmpty())
        QVERIFY2(problems.first().contains(problem), qPrintable(problems.first()));
}

void TestBridgeDiscovery::asksEveryBridgeTheServiceLists_data()
{
    QTest::addColumn<QString>("search"); // "detect" (the first), "detect all" or "find" (the second bridge)
    QTest::newRow("detect") << "detect";
    QTest::newRow("detect all") << "detect all";
    QTest::newRow("find") << "find";
}

void TestBridgeDiscovery::asksEveryBridgeTheServiceLists()
{
    QFETCH(QString, search);
    // Two bridges of one home, each on a port of its own, and a broken entry between them.
    BridgeSimulator ground;
    BridgeSimulator upper(BridgeSimulator::Floor::Upper);
    QVERIFY(ground.listenTls() && upper.listenTls());
    m_network->addTrustRoots({ground.authorityCertificate(), upper.authorityCertificate()});
    m_service->setAnswer(QStringLiteral(R"([{"id":"%1","internalipaddress":"127.0.0.1","port":%2},
        {"internalipaddress":"127.0.0.1","port":-1},{"id":"%3","internalipaddress":"127.0.0.1","port":%4}])")
                             .arg(ground.bridgeId().toLower())
                             .arg(ground.tlsPort())
                             .arg(upper.bridgeId().toLower())
                             .arg(upper.tlsPort())
                             .toUtf8());
    m_commands->arpTable = routerLine;
    PrintedLines printed;

    QStringList found;
    bool answered = false;
    if (search == u"detect") {
        m_discovery->detectBridgeIP([&](const std::optional<QString>& address) {
            found = QStringList{address.value_or(nothing)};
            answered = true;
        });
    } else if (search == u"detect all") {
        m_discovery->detectBridges([&](const QList<BridgeDiscovery::FoundBridge>& bridges) {
            for (const BridgeDiscovery::FoundBridge& bridge : bridges)
                found << bridge.address + u' ' + bridge.bridgeId.toUpper();
            answered = true;
        });
    } else {
        m_discovery->findBridge({BridgeAddress::https, {upper.bridgeId()}, false},
                                [&](const std::optional<BridgeDiscovery::Whereabouts>& where) {
                                    found = QStringList{where ? where->address : nothing};
                                    answered = true;
                                });
    }
    QTRY_VERIFY_WITH_TIMEOUT(answered, 20000);
    const QString first = ground.tlsHostAndPort();
    const QString second = upper.tlsHostAndPort();
    if (search == u"detect")
        QCOMPARE(found, QStringList{first});
    else if (search == u"detect all")
        QCOMPARE(found, (QStringList{first + u' ' + ground.bridgeId(), second + u' ' + upper.bridgeId()}));
    else
        QCOMPARE(found, QStringList{second});
    QCOMPARE(printed.lines().filter(u"entry 2 of the discovery service's answer"_qs).size(), 1);
}

void TestBridgeDiscovery::asksTheArpTableFirstAndThenTheService_data()
{
    QTest::addColumn<QString>("arp");     // "bridge", "router" (no bridge in the table) or "missing"
    QTest::addColumn<QString>("service"); // "answers", "silent", "several", "unreachable" or "off"
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("asked"); // the stand-in service; Qt asks again on a connection closed unanswered

    const auto row = [](const char* name, const char* arp, const char* service, const QString& address,
                        bool asked) {
        QTest::newRow(name) << QString(arp) << QString(service) << address << asked;
    };
    row("an ARP hit does not ask the service", "bridge", "answers", "192.168.1.20", false);
    row("no bridge in the table", "router", "answers", "192.168.1.77", true);
    row("arp not found", "missing", "answers", "192.168.1.77", true);
    row("service silent", "router", "silent", nothing, true);
    row("service lists several bridges: the first nearby", "router", "several", "192.168.1.78", true);
    row("service unreachable", "router", "unreachable", nothing, false);
    row("service switched off", "router", "off", nothing, false);
}

void TestBridgeDiscovery::asksTheArpTableFirstAndThenTheService()
{
    QFETCH(QString, arp);
    QFETCH(QString, service);
    QFETCH(QString, address);
    QFETCH(bool, asked);
    PrintedLines printed;
    if (arp != "missing")
        m_commands->arpTable = arp == "bridge" ? routerLine + u'\n' + bridgeLine + u'\n' : routerLine;
    m_service->setSilent(service == "silent");
    if (service == "several")
        m_service->setAnswer(R"([{"internalipaddress":"10.0.0.2"},{"internalipaddress":"192.168.1.78"},
                                 {"internalipaddress":"192.168.1.79"}])");
    if (service == "unreachable")
        m_discovery->setServiceUrl(QUrl(QStringLiteral("http://127.0.0.1:1/")));
    if (service == "off")
        m_discovery->setServiceUrl(QUrl());

    QCOMPARE(shown(detect()), address);
    QCOMPARE(m_commands->resolved, QStringList{"arp"});
    QCOMPARE(m_commands->runs.size(), arp == "missing" ? 0 : 1);
    if (arp != "missing") {
        QCOMPARE(m_commands->runs.first().first, QStringLiteral("/usr/sbin/arp"));
        QCOMPARE(m_commands->runs.first().second, QStringList{"-na"});
    }
    QCOMPARE(m_service->requestCount() > 0, asked);
    if (arp == "bridge" || service == "off")
        QCOMPARE(m_network->requests, 0);
    if (arp == "bridge")
        QCOMPARE(printed.lines(), QStringList{"HueHelper: Bridge IP detected via ARP: 192.168.1.20"});
    else if (address == nothing)
        QCOMPARE(printed.lines(), QStringList());
    else
        QVERIFY(printed.lines().filter(QStringLiteral("via ARP")).isEmpty());
}

void TestBridgeDiscovery::browsesTheLocalNetworkBetweenTheArpTableAndTheService_data()
{
    QTest::addColumn<bool>("inArpTable");
    QTest::addColumn<QString>("host"); // where the first bridge is announced
    QTest::addColumn<int>("port");     // 0: nothing announced
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("serviceAsked");

    const QString home = QStringLiteral("192.168.1.30");
    QTest::newRow("an ARP hit browses nothing") << true << home << 443 << "192.168.1.20" << false;
    QTest::newRow("announced on the HTTPS port: the address alone")
        << false << home << 443 << "192.168.1.30" << false;
    QTest::newRow("announced on another port") << false << home << 8443 << "192.168.1.30:8443" << false;
    QTest::newRow("nothing announced: the service") << false << home << 0 << "192.168.1.77" << true;
    QTest::newRow("announced off this computer's networks: the next one")
        << false << "10.1.2.3" << 443 << "192.168.1.31" << false;
}

void TestBridgeDiscovery::browsesTheLocalNetworkBetweenTheArpTableAndTheService()
{
    QFETCH(bool, inArpTable);
    QFETCH(QString, host);
    QFETCH(int, port);
    QFETCH(QString, address);
    QFETCH(bool, serviceAsked);
    m_commands->arpTable = inArpTable ? bridgeLine : routerLine;
    FakeLocalNetwork browser;
    if (port != 0)
        browser.announced = {{host, quint16(port), u"001788FFFE6A3B2C"_qs},
                             {u"192.168.1.31"_qs, 443, u"001788FFFE0A0B0C"_qs}};
    m_discovery->setLocalNetworkBrowser(&browser);
    PrintedLines printed;

    QCOMPARE(shown(detect()), address);
    QCOMPARE(browser.asked, inArpTable ? 0 : 1);
    QCOMPARE(m_service->requestCount() > 0, serviceAsked);
    if (!inArpTable && port != 0)
        QCOMPARE(printed.lines().filter(u"HueHelper"_qs),
                 QStringList{u"HueHelper: Bridge IP detected via mDNS: "_qs + address});
}

void TestBridgeDiscovery::asksOnlyAddressesOnItsOwnNetworksEachOncePerSearch_data()
{
    QTest::addColumn<bool>("finding"); // looking for the paired bridge that moved, else Detect
    QTest::newRow("detect") << false;
    QTest::newRow("find the paired bridge") << true;
}

void TestBridgeDiscovery::asksOnlyAddressesOnItsOwnNetworksEachOncePerSearch()
{
    QFETCH(bool, finding);
    // Announced, in the table and named by the service: strangers, a home address and loopback. The network
    // double keeps everything that is not loopback on this computer.
    FakeLocalNetwork browser;
    const QString bridgeId = QStringLiteral("001788FFFE6A3B2C");
    browser.announced = {{u"8.8.8.8"_qs, 443, bridgeId},
                         {u"169.254.7.7"_qs, 443, bridgeId},
                         {u"10.9.9.9"_qs, 80, bridgeId},
                         {u"127.0.0.3"_qs, 443, bridgeId}};
    m_discovery->setLocalNetworkBrowser(&browser);
    m_commands->arpTable = u"? (127.0.0.3) at 00:17:88:aa:bb:01 [ether] on lo\n"
                           u"? (172.20.0.4) at 00:17:88:aa:bb:02 [ether] on eth0\n"
                           u"? (192.168.1.5) at 00:17:88:aa:bb:03 [ether] on eth0\n"_qs;
    m_service->setAnswer(R"({"internalipaddress":"127.0.0.3"})");
    PrintedLines printed;

    for (int search = 0; search < 2; ++search) {
        m_network->urls.clear();
        bool answered = false;
        if (finding)
            m_discovery->findBridge(
                {BridgeAddress::https, {bridgeId}, false},
                [&](const std::optional<BridgeDiscovery::Whereabouts>&) { answered = true; });
        else
            m_discovery->detectBridges([&](const QList<BridgeDiscovery::FoundBridge>&) { answered = true; });
        QTRY_VERIFY_WITH_TIMEOUT(answered, 20000);
        QStringList asked;
        for (const QUrl& url : std::as_const(m_network->urls)) {
            if (url.path() == u"/api/config")
                asked.append(url.toString());
        }
        const qsizetype distinct = QSet<QString>(asked.cbegin(), asked.cend()).size();
        QCOMPARE(distinct, asked.size()); // each once
        QStringList hosts;
        for (const QString& url : std::as_const(asked)) {
            if (const QString host = QUrl(url).host(); !hosts.contains(host))
                hosts.append(host);
        }
        hosts.sort();
        QCOMPARE(hosts, (QStringList{"127.0.0.3", "192.168.1.5"}));
    }
    // Why a stranger was not asked is said once, not at every search.
    for (const QString& stranger : {u"8.8.8.8"_qs, u"169.254.7.7"_qs, u"10.9.9.9"_qs, u"172.20.0.4"_qs})
        QCOMPARE(printed.lines().filter(stranger).size(), 1);
    m_discovery->setLocalNetworkBrowser(nullptr);
}

void TestBridgeDiscovery::anIdClaimedInClearNeverHidesTheBridgeThatProvedIt_data()
{
    QTest::addColumn<bool>("bridgeAnswers"); // the bridge over HTTPS, announced after the claim
    QTest::addColumn<bool>("pairedOverHttps");
    QTest::addColumn<QString>("found"); // "bridge", "claim" or nothing
    QTest::newRow("both, nothing paired") << true << false << "bridge";
    QTest::newRow("both, the bridge paired over HTTPS") << true << true << "bridge";
    QTest::newRow("only the claim, the bridge paired over HTTPS") << false << true << QString();
    QTest::newRow("only the claim, nothing paired") << false << false << "claim";
}

void TestBridgeDiscovery::anIdClaimedInClearNeverHidesTheBridgeThatProvedIt()
{
    QFETCH(bool, bridgeAnswers);
    QFETCH(bool, pairedOverHttps);
    QFETCH(QString, found);
    BridgeSimulator bridge;
    QVERIFY(bridge.listenTls());
    m_network->addTrustRoots({bridge.authorityCertificate()});
    BridgeSimulator claim; // plain HTTP only, naming the bridge's id
    claim.setBridgeId(bridge.bridgeId());
    QVERIFY(claim.listen());
    FakeLocalNetwork localNetwork;
    localNetwork.announced = {{u"127.0.0.1"_qs, claim.port(), bridge.bridgeId()}};
    if (bridgeAnswers)
        localNetwork.announced.append({u"127.0.0.1"_qs, bridge.tlsPort(), bridge.bridgeId()});
    m_discovery->setArpCommand(QString());
    m_discovery->setServiceUrl(QUrl());
    m_discovery->setLocalNetworkBrowser(&localNetwork);
    ProbeKnowledge paired;
    if (pairedOverHttps)
        paired = {QStringLiteral("https"), {bridge.bridgeId(), {}}, false};

    std::optional<QList<BridgeDiscovery::FoundBridge>> bridges;
    m_discovery->detectBridges(
        paired, [&bridges](const QList<BridgeDiscovery::FoundBridge>& answer) { bridges = answer; });
    QTRY_VERIFY_WITH_TIMEOUT(bridges.has_value(), 10000);
    QStringList addresses;
    for (const BridgeDiscovery::FoundBridge& one : *bridges)
        addresses << one.address;
    const QString expected = found == u"bridge"  ? bridge.tlsHostAndPort()
                             : found == u"claim" ? claim.hostAndPort()
                                                 : QString();
    QCOMPARE(addresses, expected.isEmpty() ? QStringList() : QStringList{expected});
}

QTEST_GUILESS_MAIN(TestBridgeDiscovery)
#include "tst_bridgediscovery.moc"
