#include "app/DemoMode.h"
#include "bridge/BridgeNetwork.h"
#include "simulator/BridgeSimulator.h"
#include "state/JsonSettingsStore.h"
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

    for (const char* name : {"GLOWDECK_DISCOVERY_URL", "GLOWDECK_HELP_URL", "GLOWDECK_FEEDBACK_URL",
                             "GLOWDECK_REVIEW_URL", "GLOWDECK_WEBSITE_URL", "GLOWDECK_DONATION_URL"}) {
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
    QVERIFY(!store.contains(SettingsKeys::bridgeUser)); // the usual pairing runs

    // The simulated bridge answers there and pairs without its link button.
    BridgeNetwork network;
    QNetworkRequest request(QUrl(QStringLiteral("http://%1/api").arg(address)));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    QNetworkReply* reply = network.post(request, QByteArrayLiteral(R"({"devicetype":"test#demo"})"));
    QSignalSpy finished(reply, &QNetworkReply::finished);
    QVERIFY(finished.wait());
    QVERIFY2(reply->readAll().contains("success"), "pairing refused");
    reply->deleteLater();
}

QTEST_GUILESS_MAIN(TestDemoMode)
#include "tst_demomode.moc"
