#include "app/DemoMode.h"
#include "bridge/BridgeNetwork.h"
#include "connection/BridgePairing.h"
#include "simulator/BridgeSimulator.h"
#include "state/BridgeLink.h"
#include "state/JsonSettingsStore.h"
#include "state/MemorySettingsStore.h"
#include "state/SettingsKeys.h"

#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>

class TestDemoMode final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void switchesOffEveryOutsideAddressTheUserDidNotSet();
    void pointsItsOwnSettingsAtALoopbackBridge();
};

void TestDemoMode::switchesOffEveryOutsideAddressTheUserDidNotSet()
{
    qunsetenv("GLOWDECK_HELP_URL");
    qputenv("GLOWDECK_ERROR_ENDPOINT", "http://127.0.0.1:9/crash/");
    qunsetenv("GLOWDECK_WEBSITE_URL");

    DemoMode::switchOffOutsideAddresses();

    for (const char* name :
         {"GLOWDECK_DISCOVERY_URL", "GLOWDECK_MDNS_SERVICE", "GLOWDECK_ARP_COMMAND", "GLOWDECK_HELP_URL",
          "GLOWDECK_FEEDBACK_URL", "GLOWDECK_REVIEW_URL", "GLOWDECK_WEBSITE_URL", "GLOWDECK_DONATION_URL"}) {
        QVERIFY2(qEnvironmentVariableIsSet(name), name);
        QVERIFY2(qEnvironmentVariableIsEmpty(name), name);
    }
    QCOMPARE(qgetenv("GLOWDECK_ERROR_ENDPOINT"), QByteArray("http://127.0.0.1:9/crash/"));
}

void TestDemoMode::pointsItsOwnSettingsAtALoopbackBridge()
{
    DemoMode demo;
    QVERIFY(demo.start());
    QVERIFY(demo.settingsFile() != JsonSettingsStore::defaultFileName());

    JsonSettingsStore store(demo.settingsFile());
    const QString address = store.readString(SettingsKeys::bridgeIP).value_or(QString());
    QVERIFY2(address.startsWith(QStringLiteral("127.0.0.1:")), qPrintable(address));
    QVERIFY(Preferences(store).bridgeKey().isEmpty()); // the usual pairing runs

    // The simulated bridge pairs over HTTPS without its link button, trusted through the demo's own
    // authority only.
    const auto pair = [&](BridgeNetwork& network) {
        MemorySettingsStore memory;
        BridgeLink settings(memory);
        BridgePairing pairing(settings, network);
        std::optional<PairingOutcome> outcome;
        pairing.requestApiKey(address, [&](const PairingOutcome& answer) { outcome = answer; });
        return QTest::qWaitFor([&] { return outcome.has_value(); }, 10000) ? *outcome : PairingOutcome{};
    };
    BridgeNetwork untrusting;
    QVERIFY(pair(untrusting).refusal.contains(QStringLiteral("not a Hue bridge's")));
    BridgeNetwork network;
    network.addTrustRoots(demo.trustRoots());
    const PairingOutcome paired = pair(network);
    QVERIFY2(paired.contact && paired.contact->transport == u"https", qPrintable(paired.refusal));
    QVERIFY(paired.outcome != BridgePairing::pressButton && paired.outcome != BridgePairing::noConnection);
}

QTEST_GUILESS_MAIN(TestDemoMode)
#include "tst_demomode.moc"
