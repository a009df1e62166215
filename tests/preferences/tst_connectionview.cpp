#include "FakeLocalNetwork.h"
#include "PaneBench.h"
#include "model/BridgeAddress.h"
#include "preferences/panes/ConfigurationPart.h"
#include "preferences/panes/ConnectionPane.h"
#include "preferences/panes/ConnectionView.h"
#include "preferences/panes/ImagePlayer.h"
#include "preferences/panes/PaneWidgets.h"
#include "state/JsonSettingsStore.h"
#include "state/SettingsKeys.h"

#include <QApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

class TestConnectionView final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void statusShowsTheConnectionAndItsButtonDisconnects();
    void pairingAsksForTheLinkButtonUntilItIsPressed();
    void connectKeepsTheKeyOfAPairedBridgeThatDoesNotAnswer();
    void theBridgeIsShownWithWhoVouchedForItUntilItIsRefused_data();
    void theBridgeIsShownWithWhoVouchedForItUntilItIsRefused();
    void aTypedAddressIsAnAddressOrSaysWhyNot_data();
    void aTypedAddressIsAnAddressOrSaysWhyNot();
    void detectFillsInTheAddressOrSaysNothingWasFound_data();
    void detectFillsInTheAddressOrSaysNothingWasFound();
    void severalBridgesAreListedAndTheUserPicksOne();
    void linkButtonAnimationHoldsTheLastFrameForThirtyTicks();
    void sendDebugLinkRunsTheScriptAndThanks();
    void theListShowsEachBridgeAndHowItStands();
    void anAddedBridgeIsPairedBesideTheFirst();
    void detectLeavesOutBridgesPairedAlready_data();
    void detectLeavesOutBridgesPairedAlready();
    void removeAsksAndForgetsOnlyThatBridge();

private:
    template <typename T>
    T* child(const QString& name) const
    {
        return m_view->findChild<T*>(name);
    }
    ConnectionView& view() const { return *m_view->connectionView(); }
    /// The texts of the buttons of the selected bridge's view that show, in alphabetical order.
    QStringList shownButtons() const
    {
        QStringList texts;
        for (const QPushButton* button : view().findChildren<QPushButton*>()) {
            if (button->isVisible())
                texts << button->text();
        }
        texts.sort();
        return texts;
    }
    QTreeWidget* bridgeList() const { return child<QTreeWidget>(QStringLiteral("pairedBridges")); }
    /// Name, id, address, transport and state of the list's row.
    QStringList row(int index) const
    {
        QStringList texts;
        for (int column = 0; column < 5; ++column)
            texts << bridgeList()->topLevelItem(index)->text(column);
        return texts;
    }
    /// The bridges the settings file holds, as "id key" each.
    QStringList storedBridges() const
    {
        QFile file(m_bench->state().fileName());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QStringList bridges;
        for (const QJsonValue bridge : QJsonDocument::fromJson(file.readAll())[u"bridges"_qs].toArray())
            bridges << bridge[u"id"_qs].toString() + u' ' + bridge[u"key"_qs].toString();
        return bridges;
    }
    /// Adds a second bridge beside the first, both paired.
    BridgeSession& pairSecondBridge(BridgeSimulator& bridge)
    {
        BridgeSession& second = m_bench->addSession();
        if (!m_bench->connect() || !PaneBench::connect(second, bridge))
            qWarning("a bridge could not be paired");
        return second;
    }
    /// Answers the question the pane is about to ask with the button of `role`, keeping its text in `asked`.
    void answerNextQuestion(QMessageBox::ButtonRole role, QString* asked)
    {
        QTimer::singleShot(0, this, [role, asked] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            *asked = box->text();
            for (QAbstractButton* button : box->buttons()) {
                if (box->buttonRole(button) == role)
                    return button->click();
            }
        });
    }
    QString status() const { return child<QLabel>(QStringLiteral("connectionStatus"))->text(); }
    QPushButton* statusButton() const { return child<QPushButton>(QStringLiteral("statusButton")); }
    bool shows(const QString& text) const
    {
        for (QLabel* label : m_view->findChildren<QLabel*>()) {
            if (label->text() == text && label->isVisible())
                return true;
        }
        return false;
    }
    QString error() const
    {
        auto* label = child<QLabel>(QStringLiteral("connectionError"));
        return label->isVisible() ? label->text() : QString();
    }
    int linkRequests() const
    {
        int count = 0;
        for (const SimulatedRequest& request : m_bench->bridge().requests())
            count += request.method == "POST" && request.path == QStringLiteral("/api");
        return count;
    }

    std::unique_ptr<PaneBench> m_bench;
    std::unique_ptr<ConnectionPane> m_view;
};

void TestConnectionView::init()
{
    m_bench = std::make_unique<PaneBench>();
    QVERIFY(m_bench->start());
    PaneBench* bench = m_bench.get();
    m_view = std::make_unique<ConnectionPane>(
        m_bench->sessions(), m_bench->discovery(), m_bench->debugReport(),
        [bench]() -> BridgeSession& { return bench->addSession(); },
        [bench](BridgeSession& session) { bench->removeSession(session); });
    m_view->show();
}

void TestConnectionView::cleanup()
{
    m_view.reset();
    m_bench.reset();
}

void TestConnectionView::statusShowsTheConnectionAndItsButtonDisconnects()
{
    const bool dark = PaneWidgets::isDark(m_view.get());
    QCOMPARE(status(), QStringLiteral("DISCONNECTED"));
    QCOMPARE(child<QLabel>(QStringLiteral("connectionStatus"))->palette().color(QPalette::WindowText),
             PaneWidgets::badColor(dark));
    QCOMPARE(statusButton()->text(), QStringLiteral("Connect"));
    QVERIFY(shows(ConnectionView::unpairedHint()));
    QVERIFY(!shows(ConnectionView::connectedHint()));
    const ImagePlayer& linkExplainer = view().linkExplainer();
    QVERIFY(shows(ConnectionView::linkButtonHint()) && linkExplainer.timer().isActive());

    QVERIFY(m_bench->connect());

    QCOMPARE(status(), QStringLiteral("CONNECTED"));
    QCOMPARE(child<QLabel>(QStringLiteral("connectionStatus"))->palette().color(QPalette::WindowText),
             PaneWidgets::goodColor(dark));
    QCOMPARE(statusButton()->text(), QStringLiteral("Disconnect"));
    QVERIFY(shows(ConnectionView::connectedHint()));
    QVERIFY(!shows(ConnectionView::unpairedHint()));
    // Paired: the link button has done its part, and its animation stops.
    QVERIFY(!shows(ConnectionView::linkButtonHint()));
    QVERIFY(!linkExplainer.isVisible() && !linkExplainer.timer().isActive());

    QTest::mouseClick(statusButton(), Qt::LeftButton);

    QCOMPARE(status(), QStringLiteral("DISCONNECTED"));
    QVERIFY(shows(ConnectionView::linkButtonHint()) && linkExplainer.timer().isActive());
    QCOMPARE(m_bench->store().value(SettingsKeys::bridgeUser), QVariant(QString())); // empty, not removed
    QCOMPARE(m_bench->settings().hueKey(), QString());
    QCOMPARE(m_bench->store().readString(SettingsKeys::bridgeIP), m_bench->bridge().hostAndPort());
    QCOMPARE(statusButton()->text(), QStringLiteral("Connect"));
}

void TestConnectionView::pairingAsksForTheLinkButtonUntilItIsPressed()
{
    m_bench->store().writeString(SettingsKeys::bridgeUser, QStringLiteral("old-key"));
    QCOMPARE(shownButtons(), (QStringList{u"Connect"_qs, u"Detect and pair"_qs}));
    QTest::mouseClick(child<QRadioButton>(QStringLiteral("manualChoice")), Qt::LeftButton);
    QCOMPARE(view().configurationPart().connectionType(), ConfigurationPart::manual);
    auto* field = child<QLineEdit>(QStringLiteral("addressField"));
    QVERIFY(field->isVisible());
    // The one beside the address: not a second one by the status.
    QCOMPARE(shownButtons(), QStringList{u"Connect"_qs});
    QTest::keyClicks(field, QStringLiteral(" ") + m_bench->bridge().hostAndPort());
    QCOMPARE(m_bench->settings().hueIP(), m_bench->bridge().hostAndPort());
    m_bench->settings().home().setConnectionErrorMessage(QStringLiteral("an old problem"));

    QTest::keyClick(field, Qt::Key_Return);

    // The message goes at once; the bridge is asked half a second later, without the window waiting.
    QCOMPARE(error(), QString());
    QCOMPARE(child<QPushButton>(QStringLiteral("manualConnectButton"))->isEnabled(), false);
    QTRY_COMPARE(error(), QStringLiteral("Bridge responded: Press LINK BUTTON and retry"));
    QCOMPARE(linkRequests(), 1);
    QCOMPARE(m_bench->store().readString(SettingsKeys::bridgeUser), u"old-key"_qs); // until a new one works
    QCOMPARE(status(), QStringLiteral("DISCONNECTED"));
    QVERIFY(child<QPushButton>(QStringLiteral("manualConnectButton"))->isEnabled());

    m_bench->bridge().pressLinkButton();
    QTest::mouseClick(child<QPushButton>(QStringLiteral("manualConnectButton")), Qt::LeftButton);

    QTRY_COMPARE(status(), QStringLiteral("CONNECTED"));
    QCOMPARE(shownButtons(), (QStringList{u"Connect"_qs, u"Disconnect"_qs}));
    QCOMPARE(error(), QString());
    QCOMPARE(m_bench->store().readString(SettingsKeys::bridgeUser), m_bench->bridge().users().last());
    QCOMPARE(m_bench->store().readString(SettingsKeys::bridgeIP), m_bench->bridge().hostAndPort());
    QVERIFY(!m_bench->settings().home().lights().isEmpty());
}

void TestConnectionView::connectKeepsTheKeyOfAPairedBridgeThatDoesNotAnswer()
{
    QVERIFY(m_bench->connect());
    const QString key = m_bench->settings().hueKey();
    QTRY_COMPARE(m_bench->store().readString(SettingsKeys::bridgeUser), key);
    const int pairings = linkRequests();

    // The bridge goes away; the next tick finds nobody there.
    const quint16 port = m_bench->bridge().port();
    m_bench->bridge().close();
    m_bench->queue().setLastUserActionAt(QDateTime::currentDateTime().addSecs(-60));
    m_bench->connection().refreshTick();
    QTRY_COMPARE(status(), QStringLiteral("NOT ANSWERING"));
    const QString detail = child<QLabel>(QStringLiteral("statusDetail"))->text();
    QVERIFY2(detail.contains(u"127.0.0.1:%1"_qs.arg(port)), qPrintable(detail));
    QVERIFY(shows(detail));
    QVERIFY(!shows(ConnectionView::linkButtonHint()) && !view().linkExplainer().isVisible());
    QVERIFY(!shows(ConnectionView::unpairedHint()));

    // Connect asks for a new key, which the bridge cannot give: the one it knows stays in the file.
    QTest::mouseClick(statusButton(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!error().isEmpty() && statusButton()->isEnabled(), 15000);
    QCOMPARE(m_bench->store().readString(SettingsKeys::bridgeUser), key);
    QCOMPARE(status(), QStringLiteral("NOT ANSWERING"));

    // The program quits before the bridge is back, and starts again once it is.
    m_view.reset();
    m_bench->connection().stopBridgeStateRefresher();
    JsonSettingsStore store(m_bench->state().fileName());
    BridgeLink settings(store);
    settings.load();
    QVERIFY(m_bench->bridge().listen(QHostAddress::LocalHost, port));
    BridgePairing pairing(settings, m_bench->network());
    ActionQueue queue(settings, m_bench->network());
    BridgeConnection connection(settings, m_bench->network(), pairing, queue);
    connection.connectToBridge();
    QTRY_VERIFY_WITH_TIMEOUT(settings.home().bridgeConnected(), 10000);
    connection.stopBridgeStateRefresher();
    QCOMPARE(settings.hueKey(), key);
    QCOMPARE(linkRequests(), pairings); // used with the key it had, not paired again
}

void TestConnectionView::theBridgeIsShownWithWhoVouchedForItUntilItIsRefused_data()
{
    QTest::addColumn<BridgeSimulator::CertificateKind>("certificate");
    QTest::addColumn<QString>("transport");
    using Kind = BridgeSimulator::CertificateKind;
    // The simulator's authority is one this test adds, as --trust-root does: never the bridge maker's.
    QTest::newRow("signed by an added authority")
        << Kind::Signed
        << "HTTPS (certificate signed by Glowdeck test bridge authority, an authority added to the trusted "
           "ones, not by the bridge maker)";
    QTest::newRow("self-signed")
        << Kind::SelfSigned
        << "HTTPS (this bridge's certificate is not signed by the bridge maker; trusted since pairing)";
}

void TestConnectionView::theBridgeIsShownWithWhoVouchedForItUntilItIsRefused()
{
    QFETCH(BridgeSimulator::CertificateKind, certificate);
    QFETCH(QString, transport);
    BridgeSimulator& bridge = m_bench->bridge();
    QVERIFY(bridge.listenTls()); // which makes its authority
    m_bench->network().addTrustRoots({bridge.authorityCertificate()});
    bridge.setCertificate(certificate);
    m_bench->settings().setHueIP(bridge.httpsAddress());
    bridge.pressLinkButton();
    m_bench->connection().connectToBridge();
    QTRY_COMPARE_WITH_TIMEOUT(status(), QStringLiteral("CONNECTED"), 10000);
    const QString security = child<QLabel>(QStringLiteral("connectionSecurity"))->text();
    QVERIFY2(security.startsWith(u"Bridge %1, over %2\n"_qs.arg(bridge.bridgeId(), transport)),
             qPrintable(security));

    // Another bridge takes the address: its certificate is refused at the handshake.
    bridge.setCertificate(BridgeSimulator::CertificateKind::OtherBridge);
    m_bench->queue().setLastUserActionAt(QDateTime::currentDateTime().addSecs(-60));
    m_bench->connection().refreshTick();
    QTRY_COMPARE_WITH_TIMEOUT(status(), QStringLiteral("NOT TRUSTED"), 10000);
    QVERIFY2(error().contains(u"presented a certificate for another bridge"_qs), qPrintable(error()));
    const QString detail = child<QLabel>(QStringLiteral("statusDetail"))->text();
    QVERIFY(shows(detail));
    QVERIFY2(detail.contains(u"sent nothing to %1"_qs.arg(bridge.httpsAddress())), qPrintable(detail));
    QVERIFY2(detail.contains(u"Pairing again is not the fix"_qs), qPrintable(detail));
    QVERIFY(!shows(ConnectionView::linkButtonHint()));
}

void TestConnectionView::aTypedAddressIsAnAddressOrSaysWhyNot_data()
{
    QTest::addColumn<QString>("typed"); // "{bridge}": the simulator's host and port
    QTest::addColumn<bool>("usable");
    QTest::newRow("host and port") << "{bridge}" << true;
    QTest::newRow("with a scheme") << "http://{bridge}" << true;
    QTest::newRow("a path and a query") << "{bridge}/evil?q=" << false;
    QTest::newRow("a path up") << "{bridge}/../../x/" << false;
    QTest::newRow("a user") << "http://me@{bridge}" << false;
    QTest::newRow("a port too large") << "127.0.0.1:99999" << false;
}

void TestConnectionView::aTypedAddressIsAnAddressOrSaysWhyNot()
{
    QFETCH(QString, typed);
    QFETCH(bool, usable);
    typed.replace(u"{bridge}"_qs, m_bench->bridge().hostAndPort());
    m_bench->settings().setHueIP(u"192.0.2.1"_qs);
    QTest::mouseClick(child<QRadioButton>(QStringLiteral("manualChoice")), Qt::LeftButton);
    auto* field = child<QLineEdit>(QStringLiteral("addressField"));
    field->selectAll();
    QTest::keyClicks(field, typed);
    auto* problem = child<QLabel>(QStringLiteral("addressProblem"));
    QCOMPARE(problem->isVisible(), !usable);
    QCOMPARE(problem->text().isEmpty(), usable);
    QCOMPARE(field->accessibleDescription(), problem->text()); // read out with the field
    QCOMPARE(child<QPushButton>(QStringLiteral("manualConnectButton"))->isEnabled(), usable);
    // Typed as it goes, only ever an address: at most the part before the fault.
    if (usable)
        QCOMPARE(m_bench->settings().hueIP(), typed);
    QVERIFY(BridgeAddress::parse(m_bench->settings().hueIP()).has_value());

    // Return does nothing with what is not an address: nothing reaches the bridge, and no other path.
    QTest::keyClick(field, Qt::Key_Return);
    QTest::qWait(700);
    QCOMPARE(m_bench->bridge().requests().isEmpty(), !usable);

    // The pane opens on Manual again, as the user left it.
    QCOMPARE(ConfigurationPart(m_bench->settings()).connectionType(), ConfigurationPart::manual);
}

void TestConnectionView::detectFillsInTheAddressOrSaysNothingWasFound_data()
{
    QTest::addColumn<QString>("arpTable"); // empty: no arp at all
    QTest::addColumn<bool>("service");     // the discovery service answers with the simulator
    QTest::addColumn<QString>("address");  // "bridge": the simulator's
    QTest::addColumn<QString>("message");

    const QString pressButton = QStringLiteral("Bridge responded: Press LINK BUTTON and retry");
    // Every address found is asked who it is first: one that does not answer as a bridge is no bridge.
    QTest::newRow("in the ARP table, not answering")
        << "? (127.0.0.2) at 00:17:88:aa:bb:cc [ether] on eth0\n"
        << false << ""
        << "Unable to connect to the Hue bridge. Is the IP address correct?";
    QTest::newRow("from the discovery service") << "" << true << "bridge" << pressButton;
    QTest::newRow("nowhere") << "? (10.0.0.1) at 11:22:33:44:55:66 [ether] on eth0\n"
                             << false << ""
                             << "Unable to connect to the Hue bridge. Is the IP address correct?";
}

void TestConnectionView::detectFillsInTheAddressOrSaysNothingWasFound()
{
    QFETCH(QString, arpTable);
    QFETCH(bool, service);
    QFETCH(QString, address);
    QFETCH(QString, message);
    if (!arpTable.isEmpty())
        m_bench->commands.arpTable = arpTable;
    if (service) {
        m_bench->discovery().setServiceUrl(m_bench->service.url());
        m_bench->service.setAnswer(QStringLiteral(R"({"id":"001788fffe000000","internalipaddress":"%1"})")
                                       .arg(m_bench->bridge().hostAndPort())
                                       .toUtf8());
    }
    auto* detect = child<QPushButton>(QStringLiteral("detectButton"));

    QTest::mouseClick(detect, Qt::LeftButton);

    QVERIFY(!detect->isEnabled());
    QTRY_COMPARE_WITH_TIMEOUT(error(), message, 10000);
    QCOMPARE(m_bench->settings().hueIP(), address == u"bridge" ? m_bench->bridge().hostAndPort() : address);
    QTRY_VERIFY(detect->isEnabled());
}

void TestConnectionView::severalBridgesAreListedAndTheUserPicksOne()
{
    // The same bridge announced on the local network and by the service is listed once.
    BridgeSimulator upstairs;
    upstairs.setBridgeId(u"001788FFFE000001"_qs);
    QVERIFY(upstairs.listen());
    FakeLocalNetwork localNetwork;
    localNetwork.announced = {{u"127.0.0.1"_qs, m_bench->bridge().port(), m_bench->bridge().bridgeId()},
                              {u"127.0.0.1"_qs, upstairs.port(), upstairs.bridgeId()}};
    m_bench->discovery().setLocalNetworkBrowser(&localNetwork);
    m_bench->discovery().setServiceUrl(m_bench->service.url());
    m_bench->service.setAnswer(
        u"{\"internalipaddress\":\"%1\"}"_qs.arg(m_bench->bridge().hostAndPort()).toUtf8());

    QTest::mouseClick(child<QPushButton>(QStringLiteral("detectButton")), Qt::LeftButton);

    auto* choices = child<QListWidget>(QStringLiteral("bridgeChoices"));
    QTRY_VERIFY(choices->isVisible());
    QCOMPARE(choices->accessibleName(), QStringLiteral("Bridges found"));
    QCOMPARE(choices->count(), 2);
    QCOMPARE(choices->item(1)->text(),
             u"Philips hue at %1 (%2)"_qs.arg(upstairs.hostAndPort(), upstairs.bridgeId()));
    QVERIFY(choices->hasFocus());
    QVERIFY(m_bench->settings().hueIP().isEmpty()); // nothing chosen yet
    QCOMPARE(child<QLabel>(QStringLiteral("foundAddress"))->text(), u"2 bridges found."_qs);

    QTest::keyClick(choices, Qt::Key_Down);
    QTest::keyClick(choices, Qt::Key_Return);
    QCOMPARE(m_bench->settings().hueIP(), upstairs.hostAndPort());
    QVERIFY(!choices->isVisible());
    QTRY_COMPARE(error(), QStringLiteral("Bridge responded: Press LINK BUTTON and retry")); // asked for a key
    m_bench->discovery().setLocalNetworkBrowser(nullptr);
}

void TestConnectionView::linkButtonAnimationHoldsTheLastFrameForThirtyTicks()
{
    ImagePlayer& player = view().linkExplainer();
    QVERIFY(player.timer().isActive());
    QCOMPARE(player.timer().interval(), 70);
    QCOMPARE(player.imageName(), QStringLiteral("frame_0"));

    QList<int> shown;
    for (int tick = 0; tick < 93; ++tick) {
        player.tick();
        shown << player.imageIndex();
    }

    QList<int> expected;
    for (int frame = 1; frame <= 62; ++frame)
        expected << frame;
    for (int hold = 0; hold < 29; ++hold) // frame 62 stays for ticks 62 to 91: 30 ticks, 2.1 s
        expected << 62;
    expected << 0 << 1;
    QCOMPARE(shown, expected);

    m_view->hide();
    QVERIFY(!player.timer().isActive());
    m_view->show();
    QVERIFY(player.timer().isActive());
}

void TestConnectionView::sendDebugLinkRunsTheScriptAndThanks()
{
    // The action only looks Ruby up on the PATH; the fake shell runs nothing.
    QTemporaryDir bin;
    QFile ruby(bin.filePath(QStringLiteral("ruby")));
    QVERIFY(ruby.open(QIODevice::WriteOnly));
    ruby.setPermissions(QFileDevice::ExeOwner | QFileDevice::ReadOwner);
    ruby.close();
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", bin.path().toUtf8());
    auto* link = child<LinkButton>(QStringLiteral("sendDebugLink"));
    QCOMPARE(link->text(), QStringLiteral("Connection trouble? Click to send debug data!"));

    QTest::mouseClick(link, Qt::LeftButton);
    qputenv("PATH", path);

    QCOMPARE(m_bench->commands.scriptsRun, QStringList{QStringLiteral("send_debug|")});
    QVERIFY(view().debugSent());
    QCOMPARE(link->text(), QStringLiteral("Thank you!"));
}

void TestConnectionView::theListShowsEachBridgeAndHowItStands()
{
    QVERIFY(!bridgeList()->isVisible()); // nothing paired yet: the pane is about pairing the first
    BridgeSimulator upstairs(BridgeSimulator::Floor::Upper);
    QVERIFY(upstairs.listen());
    BridgeSession& second = pairSecondBridge(upstairs);
    QVERIFY(second.link().home().bridgeConnected());

    QVERIFY(bridgeList()->isVisible());
    QCOMPARE(bridgeList()->accessibleName(), u"Paired bridges"_qs);
    const BridgeSimulator& ground = m_bench->bridge();
    QCOMPARE(row(0), (QStringList{u"Philips hue"_qs, ground.bridgeId(), ground.hostAndPort(), u"HTTP"_qs,
                                  u"reading"_qs}));
    QCOMPARE(row(1), (QStringList{u"Upstairs"_qs, upstairs.bridgeId(), upstairs.hostAndPort(), u"HTTP"_qs,
                                  u"reading"_qs}));
    m_bench->settings().home().setLiveUpdates(true);
    QCOMPARE(row(0).last(), u"live"_qs);

    // The row chosen is the bridge shown below, and the one asked for a new key.
    bridgeList()->setCurrentItem(bridgeList()->topLevelItem(1));
    QCOMPARE(&view().session(), &second);
    QCOMPARE(child<QLineEdit>(QStringLiteral("addressField"))->text(), upstairs.hostAndPort());
    const qsizetype groundRequests = ground.requests().size();
    const auto pairingsUpstairs = [&upstairs] {
        return std::count_if(
            upstairs.requests().cbegin(), upstairs.requests().cend(),
            [](const SimulatedRequest& r) { return r.method == "POST" && r.path == u"/api"; });
    };
    const auto before = pairingsUpstairs();
    QTest::mouseClick(child<QPushButton>(QStringLiteral("pairBridgeAgain")), Qt::LeftButton);
    QTRY_COMPARE(pairingsUpstairs(), before + 1);
    QVERIFY(std::none_of(ground.requests().cbegin() + groundRequests, ground.requests().cend(),
                         [](const SimulatedRequest& r) { return r.method == "POST"; }));

    upstairs.close();
    second.queue().setLastUserActionAt(QDateTime::currentDateTime().addSecs(-60));
    second.connection().refreshTick();
    QTRY_COMPARE_WITH_TIMEOUT(row(1).last(), u"not answering"_qs, 10000);
    QCOMPARE(row(0).last(), u"live"_qs);
}

void TestConnectionView::anAddedBridgeIsPairedBesideTheFirst()
{
    QVERIFY(m_bench->connect());
    const QString firstKey = m_bench->settings().hueKey();
    BridgeSimulator upstairs(BridgeSimulator::Floor::Upper);
    QVERIFY(upstairs.listen());

    QTest::mouseClick(child<QPushButton>(QStringLiteral("addBridge")), Qt::LeftButton);

    // The new bridge is shown below, to be paired; the first stays connected.
    QCOMPARE(m_bench->sessions().size(), 2);
    QCOMPARE(&view().session(), m_bench->sessions().all().at(1));
    QCOMPARE(status(), u"DISCONNECTED"_qs);
    QVERIFY(shows(ConnectionView::unpairedHint()));
    QCOMPARE(row(1), (QStringList{u"New bridge"_qs, {}, {}, {}, u"not paired"_qs}));
    QTest::mouseClick(child<QRadioButton>(QStringLiteral("manualChoice")), Qt::LeftButton);
    QTest::keyClicks(child<QLineEdit>(QStringLiteral("addressField")), upstairs.hostAndPort());
    upstairs.pressLinkButton();
    QTest::mouseClick(child<QPushButton>(QStringLiteral("manualConnectButton")), Qt::LeftButton);

    QTRY_COMPARE_WITH_TIMEOUT(status(), u"CONNECTED"_qs, 10000);
    QVERIFY(m_bench->settings().home().bridgeConnected());
    QCOMPARE(storedBridges(), (QStringList{m_bench->bridge().bridgeId() + u' ' + firstKey,
                                           upstairs.bridgeId() + u' ' + upstairs.users().last()}));
    QCOMPARE(row(1).first(), u"Upstairs"_qs);
}

void TestConnectionView::detectLeavesOutBridgesPairedAlready_data()
{
    QTest::addColumn<bool>("otherAnnounced"); // a bridge not paired yet answers too
    QTest::newRow("only the paired one") << false;
    QTest::newRow("the paired one and another") << true;
}

void TestConnectionView::detectLeavesOutBridgesPairedAlready()
{
    QFETCH(bool, otherAnnounced);
    QVERIFY(m_bench->connect());
    BridgeSimulator upstairs(BridgeSimulator::Floor::Upper);
    QVERIFY(upstairs.listen());
    FakeLocalNetwork localNetwork;
    localNetwork.announced = {{u"127.0.0.1"_qs, m_bench->bridge().port(), m_bench->bridge().bridgeId()}};
    if (otherAnnounced)
        localNetwork.announced.append({u"127.0.0.1"_qs, upstairs.port(), upstairs.bridgeId()});
    m_bench->discovery().setLocalNetworkBrowser(&localNetwork);
    QTest::mouseClick(child<QPushButton>(QStringLiteral("addBridge")), Qt::LeftButton);
    BridgeLink& added = view().session().link();

    QTest::mouseClick(child<QPushButton>(QStringLiteral("detectButton")), Qt::LeftButton);

    // The one bridge left is taken without a choice: it is asked for a key.
    QTRY_VERIFY_WITH_TIMEOUT(!error().isEmpty(), 10000);
    QCOMPARE(error(), otherAnnounced ? u"Bridge responded: Press LINK BUTTON and retry"_qs
                                     : ConnectionView::allPairedText());
    QCOMPARE(added.hueIP(), otherAnnounced ? upstairs.hostAndPort() : QString());
    QVERIFY(!child<QListWidget>(QStringLiteral("bridgeChoices"))->isVisible());
    QCOMPARE(m_bench->settings().hueIP(), m_bench->bridge().hostAndPort());
    m_bench->discovery().setLocalNetworkBrowser(nullptr);
}

void TestConnectionView::removeAsksAndForgetsOnlyThatBridge()
{
    BridgeSimulator upstairs(BridgeSimulator::Floor::Upper);
    QVERIFY(upstairs.listen());
    BridgeSession& second = pairSecondBridge(upstairs);
    QTRY_COMPARE(storedBridges().size(), 2);
    bridgeList()->setCurrentItem(bridgeList()->topLevelItem(1));
    QCOMPARE(&view().session(), &second);
    auto* remove = child<QPushButton>(QStringLiteral("removeBridge"));

    QString asked;
    answerNextQuestion(QMessageBox::RejectRole, &asked);
    QTest::mouseClick(remove, Qt::LeftButton);
    QCOMPARE(asked, ConnectionPane::removeQuestion(u"Upstairs"_qs));
    QCOMPARE(m_bench->sessions().size(), 2);
    QCOMPARE(storedBridges().size(), 2);

    answerNextQuestion(QMessageBox::DestructiveRole, &asked);
    QTest::mouseClick(remove, Qt::LeftButton);

    // Only that entry goes; the pane shows the bridge that is left, not the session that ended.
    QCOMPARE(storedBridges(),
             QStringList{m_bench->bridge().bridgeId() + u' ' + m_bench->settings().hueKey()});
    QCOMPARE(m_bench->sessions().all(), QList<BridgeSession*>{&m_bench->session()});
    QCOMPARE(bridgeList()->topLevelItemCount(), 1);
    QCOMPARE(&view().session(), &m_bench->session());
    QCOMPARE(child<QLineEdit>(QStringLiteral("addressField"))->text(), m_bench->bridge().hostAndPort());
    QCOMPARE(status(), u"CONNECTED"_qs);
}

QTEST_MAIN(TestConnectionView)
#include "tst_connectionview.moc"
