#include "BridgeSimulator.h"
#include "SimulatedSchedules.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class tst_BridgeSimulator final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_simulator.reset(); }
    void pairingNeedsTheLinkButton();
    void controlRequestPressesTheLinkButton();
    void errorsAnswerWithTypeAndAddress_data();
    void errorsAnswerWithTypeAndAddress();
    void changesShowInTheNextRead_data();
    void changesShowInTheNextRead();
    void scheduleFires();
    void membersKeepTheirOrder();
    void latencyDoesNotBlock();
    void homeRoundTrip();
    void badHomeFileChangesNothing_data();
    void badHomeFileChangesNothing();

private:
    struct Reply
    {
        QNetworkReply::NetworkError error = QNetworkReply::NoError;
        QByteArray body;
        QJsonDocument json;
    };

    Reply send(const QByteArray& method, const QString& path, const QByteArray& body = {});
    QString api(const QString& rest) const { return QStringLiteral("/api/") + m_user + rest; }
    /// The object under @p key in the first item of the answer ("success" or "error").
    static QJsonObject first(const Reply& r, const QString& key) { return r.json[0][key].toObject(); }

    std::unique_ptr<BridgeSimulator> m_simulator;
    QNetworkAccessManager m_network;
    QString m_user = QStringLiteral("tester0123456789");
};

tst_BridgeSimulator::Reply tst_BridgeSimulator::send(const QByteArray& method, const QString& path,
                                                     const QByteArray& body)
{
    QNetworkRequest request(QUrl(QStringLiteral("http://%1%2").arg(m_simulator->hostAndPort(), path)));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    request.setTransferTimeout(10'000);
    std::unique_ptr<QNetworkReply> reply(m_network.sendCustomRequest(request, method, body));
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    if (!reply->isFinished())
        finished.wait(15'000);
    const QByteArray answer = reply->readAll();
    return {reply->error(), answer, QJsonDocument::fromJson(answer)};
}

void tst_BridgeSimulator::init()
{
    m_simulator = std::make_unique<BridgeSimulator>();
    QVERIFY2(m_simulator->listen(QHostAddress::LocalHost, 0), qPrintable(m_simulator->errorString()));
    QVERIFY(m_simulator->registerUser(m_user));
    m_network.clearConnectionCache();
}

void tst_BridgeSimulator::pairingNeedsTheLinkButton()
{
    const QByteArray body = R"({"devicetype":"glowdeck#test"})";
    QCOMPARE(first(send("POST", "/api", body), "error").value("type").toInt(), 101);

    m_simulator->pressLinkButton();
    const QString name = first(send("POST", "/api", body), "success").value("username").toString();
    QCOMPARE(name.size(), 40);
    QVERIFY(m_simulator->users().contains(name));
    QVERIFY(
        send("GET", "/api/" + name + "/config").json.object().value("whitelist").toObject().contains(name));
}

void tst_BridgeSimulator::controlRequestPressesTheLinkButton()
{
    QSignalSpy pressed(m_simulator.get(), &BridgeSimulator::linkButtonPressedByRequest);
    QCOMPARE(send("GET", "/__control/linkbutton").json["error"].toString(),
             "press the link button with POST");
    QVERIFY(!m_simulator->linkButtonPressed());

    QCOMPARE(send("POST", "/__control/linkbutton").json["linkbutton"].toBool(), true);

    QVERIFY(m_simulator->linkButtonPressed());
    QCOMPARE(pressed.size(), 1);
    QVERIFY(first(send("POST", "/api", R"({"devicetype":"glowdeck#test"})"), "success").contains("username"));
    // The simulator's own controls are not bridge traffic.
    for (const SimulatedRequest& request : m_simulator->requests())
        QVERIFY(!request.path.startsWith(QStringLiteral("/__control/")));
}

void tst_BridgeSimulator::errorsAnswerWithTypeAndAddress_data()
{
    QTest::addColumn<QString>("request"); // method, path (%1: the registered user) and body
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("address");
    QTest::newRow("unknown user") << "GET /api/nobody/lights" << 1 << "/lights";
    QTest::newRow("missing light") << "GET /api/%1/lights/99" << 3 << "/lights/99";
    QTest::newRow("invalid json") << "PUT /api/%1/lights/1/state {on:" << 2 << "/lights/1/state";
    QTest::newRow("wrong type") << R"(PUT /api/%1/lights/1/state {"bri":"x"})" << 7 << "/lights/1/state/bri";
    QTest::newRow("hue on a white lamp")
        << R"(PUT /api/%1/lights/6/state {"hue":10})" << 6 << "/lights/6/state/hue";
}

void tst_BridgeSimulator::errorsAnswerWithTypeAndAddress()
{
    QFETCH(QString, request);
    QFETCH(int, type);
    QFETCH(QString, address);
    request.replace("%1", m_user);
    const Reply reply = send(request.section(u' ', 0, 0).toUtf8(), request.section(u' ', 1, 1),
                             request.section(u' ', 2).toUtf8());
    QCOMPARE(reply.error, QNetworkReply::NoError); // a bridge reports errors inside a normal answer
    QCOMPARE(first(reply, "error").value("type").toInt(), type);
    QCOMPARE(first(reply, "error").value("address").toString(), address);
}

void tst_BridgeSimulator::changesShowInTheNextRead_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QJsonObject>("expected"); // light id ("*": every light having the attribute) -> state
    auto row = [](const char* name, const char* path, const char* body, const char* expected) {
        QTest::newRow(name) << path << QByteArray(body) << QJsonDocument::fromJson(expected).object();
    };
    // bri clamped like a bridge, ct to the lamp's own range (153..454).
    row("light, clamped", "/lights/4/state", R"({"on":false,"bri":300,"ct":600})",
        R"({"4":{"on":false,"bri":254,"ct":454,"colormode":"ct"}})");
    row("group 0 off", "/groups/0/action", R"({"on":false})", R"({"*":{"on":false}})");
    row("scene recall", "/groups/1/action", R"({"scene":"xR4tB1kVn2QmZ8a"})",
        R"({"1":{"on":true,"bri":144,"ct":447,"colormode":"ct"},
            "3":{"on":true,"bri":144,"xy":[0.5019,0.4152],"colormode":"xy"}})");
    row("bri_inc stays at 1", "/groups/0/action", R"({"bri_inc":-254})", R"({"*":{"bri":1}})");
    row("bri_inc stops at 254", "/groups/3/action", R"({"bri_inc":254})",
        R"({"6":{"bri":254},"7":{"bri":254},"8":{"bri":254}})");
}

void tst_BridgeSimulator::changesShowInTheNextRead()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, body);
    QFETCH(QJsonObject, expected);
    const Reply reply = send("PUT", api(path), body);
    QCOMPARE(m_simulator->requests().first().rawBody, body); // the log keeps the request as sent
    const QJsonObject lights = send("GET", api("/lights")).json.object();
    auto stateIn = [&lights](const QString& id) { return lights[id][u"state"].toObject(); };
    for (const QJsonValue item : reply.json.array()) { // each success echoes the value as applied
        const QJsonObject success = item[u"success"].toObject();
        QVERIFY2(success.size() == 1, reply.body.constData());
        const QStringList address = success.begin().key().split(u'/'); // "", "lights", id, "state", key
        if (address.at(1) == "lights")
            QCOMPARE(stateIn(address.at(2)).value(address.at(4)), success.begin().value());
    }
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        const QJsonObject wanted = it.value().toObject();
        for (const QString& id : it.key() == "*" ? lights.keys() : QStringList{it.key()}) {
            for (auto attribute = wanted.begin(); attribute != wanted.end(); ++attribute) {
                if (it.key() != "*" || stateIn(id).contains(attribute.key()))
                    QVERIFY2(stateIn(id).value(attribute.key()) == attribute.value(),
                             qPrintable(id + '.' + attribute.key()));
            }
        }
    }
    for (const QJsonValue group : send("GET", api("/groups")).json.object()) { // summaries follow the lights
        bool anyOn = false;
        for (const QJsonValue light : group[u"lights"].toArray())
            anyOn = anyOn || stateIn(light.toString()).value("on").toBool();
        QCOMPARE(group[u"state"][u"any_on"].toBool(), anyOn);
    }
}

void tst_BridgeSimulator::scheduleFires()
{
    QCOMPARE(SimulatedSchedules::timerDuration("PT01:30:00"), 90 * 60 * 1000);
    QCOMPARE(SimulatedSchedules::timerDuration("PT00:90:00"), -1); // a bridge refuses minutes above 59
    const QString body = QStringLiteral(R"({"name":"all off","localtime":"PT00:00:01","autodelete":true,
        "command":{"address":"/api/%1/groups/0/action","method":"PUT","body":{"on":false}}})");
    const Reply reply = send("POST", api("/schedules"), body.arg(m_user).toUtf8());
    QCOMPARE(first(reply, "success").value("id").toString(), "1");
    QVERIFY(m_simulator->group("0")["state"][u"any_on"].toBool());
    QTRY_VERIFY_WITH_TIMEOUT(!m_simulator->group("0")["state"][u"any_on"].toBool(), 5000);
    QCOMPARE(send("GET", api("/schedules")).json.object(), QJsonObject()); // autodelete
}

void tst_BridgeSimulator::membersKeepTheirOrder()
{
    auto servedIds = [this](const QString& path) { // ids of the objects in the answer, in the order served
        QStringList ids;
        for (const auto& match :
             QRegularExpression(R"re("(\d+)":\{)re").globalMatch(send("GET", api(path)).body))
            ids << match.captured(1);
        return ids;
    };
    const QStringList homeOrder{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "12", "11"};
    QCOMPARE(servedIds("/lights"), homeOrder);
    QCOMPARE(servedIds("").mid(0, 12), homeOrder); // lights come first in the full state

    m_simulator->setRawResource("lights",
                                R"({"7":{"name":"b","state":{"on":true}},"3":{"name":"a","state":{}}})");
    QCOMPARE(m_simulator->lightIds(), (QStringList{"7", "3"}));
    QCOMPARE(servedIds("/lights"), (QStringList{"7", "3"}));
}

void tst_BridgeSimulator::latencyDoesNotBlock()
{
    m_simulator->setLatency(400);
    QNetworkRequest request(
        QUrl(QStringLiteral("http://%1%2").arg(m_simulator->hostAndPort(), api("/lights"))));
    std::unique_ptr<QNetworkReply> replies[] = {std::unique_ptr<QNetworkReply>(m_network.get(request)),
                                                std::unique_ptr<QNetworkReply>(m_network.get(request))};
    // Both requests are taken in while the first answer is still held back.
    QTRY_COMPARE_WITH_TIMEOUT(m_simulator->requests().size(), 2, 5000);
    QVERIFY(!replies[0]->isFinished() && !replies[1]->isFinished());
    QTRY_VERIFY_WITH_TIMEOUT(replies[0]->isFinished() && replies[1]->isFinished(), 5000);
    QCOMPARE(QJsonDocument::fromJson(replies[1]->readAll()).object().keys().size(), 12);
}

void tst_BridgeSimulator::homeRoundTrip()
{
    QTemporaryDir dir;
    const QString fileName = dir.filePath("home.json");
    send("PUT", api("/lights/2/state"), R"({"bri":10})");
    const QJsonObject light = m_simulator->light("2");
    QString error;
    QVERIFY2(m_simulator->saveHome(fileName, &error), qPrintable(error));
    m_simulator->clearHome();
    QCOMPARE(send("GET", api("/lights")).body, QByteArray("{}"));

    QVERIFY2(m_simulator->loadHome(fileName, &error), qPrintable(error));
    QCOMPARE(m_simulator->lightIds().last(), QStringLiteral("11"));
    QCOMPARE(m_simulator->users(), QStringList{m_user});
    QCOMPARE(send("GET", api("/lights/2")).json.object(), light);
}

void tst_BridgeSimulator::badHomeFileChangesNothing_data()
{
    QTest::addColumn<QByteArray>("content"); // null: no file at all
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing file") << QByteArray() << "No such file";
    QTest::newRow("not json") << QByteArray("{\"lights\":") << "not valid JSON";
    QTest::newRow("light without state")
        << QByteArray(R"({"lights":{"1":{"name":"x"}}})") << "lights/1 has no \"state\" object";
    QTest::newRow("group of unknown light") << QByteArray(R"({"lights":{},"groups":{"1":{"lights":["5"]}}})")
                                            << "groups/1 lists light 5, which does not exist";
}

void tst_BridgeSimulator::badHomeFileChangesNothing()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    QTemporaryDir dir;
    const QString fileName = dir.filePath("home.json");
    QFile file(fileName);
    QVERIFY(content.isNull() || (file.open(QIODevice::WriteOnly) && file.write(content) && file.flush()));
    const QStringList before = m_simulator->lightIds();
    QString error;
    QVERIFY(!m_simulator->loadHome(fileName, &error));
    QVERIFY2(error.contains(fileName) && error.contains(reason), qPrintable(error));
    QCOMPARE(m_simulator->lightIds(), before);
    QVERIFY(send("GET", api("/lights/1")).json.object().contains("state"));
}

QTEST_GUILESS_MAIN(tst_BridgeSimulator)
#include "tst_bridgesimulator.moc"
