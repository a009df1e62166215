#include "BridgeSimulator.h"
#include "SimulatedSchedules.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class tst_BridgeSimulator final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void pairing();
    void errors_data();
    void errors();
    void lightStateChange();
    void groupAction_data();
    void groupAction();
    void scheduleFires();
    void servedOrder();
    void faults_data();
    void faults();
    void latencyDoesNotBlock();
    void homeRoundTrip();
    void badHomeFile_data();
    void badHomeFile();

private:
    struct Reply
    {
        QNetworkReply::NetworkError error = QNetworkReply::NoError;
        int status = 0;
        QByteArray body;
        QJsonDocument json;
    };

    Reply send(const QByteArray& method, const QString& path, const QByteArray& body = {});
    QString api(const QString& rest) const { return QStringLiteral("/api/") + m_user + rest; }
    QJsonObject firstItem(const Reply& reply) const { return reply.json.array().first().toObject(); }

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
    QNetworkReply* reply = m_network.sendCustomRequest(request, method, body);
    QSignalSpy finished(reply, &QNetworkReply::finished);
    if (!reply->isFinished())
        finished.wait(15'000);
    Reply result;
    result.error = reply->error();
    result.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    result.body = reply->readAll();
    result.json = QJsonDocument::fromJson(result.body);
    reply->deleteLater();
    return result;
}

void tst_BridgeSimulator::init()
{
    m_simulator = std::make_unique<BridgeSimulator>();
    QVERIFY2(m_simulator->listen(QHostAddress::LocalHost, 0), qPrintable(m_simulator->errorString()));
    QVERIFY(m_simulator->registerUser(m_user));
    m_network.clearConnectionCache();
}

void tst_BridgeSimulator::cleanup()
{
    m_simulator.reset();
}

void tst_BridgeSimulator::pairing()
{
    const QByteArray body = R"({"devicetype":"glowdeck#test"})";
    QCOMPARE(firstItem(send("POST", "/api", body)).value("error").toObject().value("type").toInt(), 101);

    m_simulator->pressLinkButton();
    QVERIFY(m_simulator->linkButtonPressed());
    const Reply reply = send("POST", "/api", body);
    QCOMPARE(reply.status, 200);
    const QString name = firstItem(reply).value("success").toObject().value("username").toString();
    QCOMPARE(name.size(), 40);
    QVERIFY(m_simulator->users().contains(name));
    const QJsonObject config = send("GET", "/api/" + name + "/config").json.object();
    QVERIFY(config.value("whitelist").toObject().contains(name));
}

void tst_BridgeSimulator::errors_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("path"); // %1: the registered user
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("description");
    auto row = [](const char* name, const char* method, const char* path, const char* body, int type,
                  const char* address, const char* description) {
        QTest::newRow(name) << QByteArray(method) << QString(path) << QByteArray(body) << type
                            << QString(address) << QString(description);
    };
    row("pairing, not json", "POST", "/api", "{devicetype:", 2, "", "body contains invalid json");
    row("pairing, no devicetype", "POST", "/api", "{}", 5, "", "invalid/missing parameters in body");
    row("unknown user", "GET", "/api/nobody/lights", "", 1, "/lights", "unauthorized user");
    row("missing light", "GET", "/api/%1/lights/99", "", 3, "/lights/99",
        "resource, /lights/99, not available");
    row("missing group", "PUT", "/api/%1/groups/42/action", "{}", 3, "/groups/42/action",
        "resource, /groups/42/action, not available");
    row("invalid json", "PUT", "/api/%1/lights/1/state", "{on:", 2, "/lights/1/state",
        "body contains invalid json");
    row("wrong type", "PUT", "/api/%1/lights/1/state", R"({"bri":"x"})", 7, "/lights/1/state/bri",
        "invalid value, x, for parameter, bri");
    row("hue on a white lamp", "PUT", "/api/%1/lights/6/state", R"({"hue":10})", 6, "/lights/6/state/hue",
        "parameter, hue, not available");
    row("wrong method", "POST", "/api/%1/lights/1", "{}", 4, "/lights/1",
        "method, POST, not available for resource, /lights/1");
    row("absolute timer", "POST", "/api/%1/schedules",
        R"({"localtime":"2030-01-01T08:00:00","command":{"address":"/api/x/lights/1/state","method":"PUT",
            "body":{"on":true}}})",
        7, "/schedules/localtime", "invalid value, 2030-01-01T08:00:00, for parameter, localtime");
}

void tst_BridgeSimulator::errors()
{
    QFETCH(QByteArray, method);
    QFETCH(QString, path);
    QFETCH(QByteArray, body);
    QFETCH(int, type);
    QFETCH(QString, address);
    QFETCH(QString, description);
    m_simulator->pressLinkButton(); // pairing must fail for the body alone
    const Reply reply = send(method, QString(path).replace("%1", m_user), body);
    QCOMPARE(reply.status, 200); // a bridge reports errors inside a normal answer
    const QJsonObject error = firstItem(reply).value("error").toObject();
    QCOMPARE(error.value("type").toInt(), type);
    QCOMPARE(error.value("address").toString(), address);
    QCOMPARE(error.value("description").toString(), description);
}

void tst_BridgeSimulator::lightStateChange()
{
    QSignalSpy received(m_simulator.get(), &BridgeSimulator::requestReceived);
    const QByteArray body = R"({"on":false,"bri":300,"ct":600})";
    // Echoes the values as applied: bri clamped like a bridge, ct to the lamp's own range (153..454).
    QCOMPARE(send("PUT", api("/lights/4/state"), body).json,
             QJsonDocument::fromJson(R"([{"success":{"/lights/4/state/bri":254}},
                                         {"success":{"/lights/4/state/ct":454}},
                                         {"success":{"/lights/4/state/on":false}}])"));
    const QJsonObject state = send("GET", api("/lights/4")).json.object().value("state").toObject();
    QCOMPARE(state.value("on").toBool(), false);
    QCOMPARE(state.value("bri").toInt(), 254);
    QCOMPARE(state.value("ct").toInt(), 454);
    QCOMPARE(state.value("colormode").toString(), QStringLiteral("ct"));
    QCOMPARE(m_simulator->light("4").value("state").toObject(), state);

    QCOMPARE(received.size(), 2);
    const SimulatedRequest put = m_simulator->requests().first();
    QCOMPARE(put.method, QByteArray("PUT"));
    QCOMPARE(put.path, api("/lights/4/state"));
    QCOMPARE(put.rawBody, body);
    QCOMPARE(put.body.value("bri").toInt(), 300);
}

void tst_BridgeSimulator::groupAction_data()
{
    QTest::addColumn<QString>("groupId");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QJsonObject>("expected"); // light id ("*": every light having the attribute) -> state
    auto object = [](const char* json) { return QJsonDocument::fromJson(json).object(); };
    QTest::newRow("group 0 off") << "0" << QByteArray(R"({"on":false})") << object(R"({"*":{"on":false}})");
    QTest::newRow("scene recall") << "1" << QByteArray(R"({"scene":"xR4tB1kVn2QmZ8a"})")
                                  << object(R"({"1":{"on":true,"bri":144,"ct":447,"colormode":"ct"},
                                     "3":{"on":true,"bri":144,"xy":[0.5019,0.4152],"colormode":"xy"}})");
    QTest::newRow("bri_inc stays at 1")
        << "0" << QByteArray(R"({"bri_inc":-254})") << object(R"({"*":{"bri":1}})");
    QTest::newRow("bri_inc stops at 254") << "3" << QByteArray(R"({"bri_inc":254})")
                                          << object(R"({"6":{"bri":254},"7":{"bri":254},"8":{"bri":254}})");
}

void tst_BridgeSimulator::groupAction()
{
    QFETCH(QString, groupId);
    QFETCH(QByteArray, body);
    QFETCH(QJsonObject, expected);
    const Reply reply = send("PUT", api("/groups/" + groupId + "/action"), body);
    QVERIFY2(firstItem(reply).contains("success"), reply.body.constData());

    const QJsonObject lights = send("GET", api("/lights")).json.object();
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        const QStringList ids = it.key() == "*" ? lights.keys() : QStringList{it.key()};
        const QJsonObject wanted = it.value().toObject();
        for (const QString& id : ids) {
            const QJsonObject state = lights.value(id).toObject().value("state").toObject();
            for (auto attribute = wanted.begin(); attribute != wanted.end(); ++attribute) {
                if (it.key() == "*" && !state.contains(attribute.key()))
                    continue;
                QVERIFY2(state.value(attribute.key()) == attribute.value(),
                         qPrintable(id + '.' + attribute.key()));
            }
        }
    }
    // Every group's summary follows its lights.
    const QJsonObject groups = send("GET", api("/groups")).json.object();
    for (const QString& id : groups.keys()) {
        bool anyOn = false;
        for (const QJsonValue light : groups.value(id).toObject().value("lights").toArray())
            anyOn = anyOn ||
                    lights.value(light.toString()).toObject().value("state").toObject().value("on").toBool();
        QCOMPARE(groups.value(id).toObject().value("state").toObject().value("any_on").toBool(), anyOn);
    }
}

void tst_BridgeSimulator::scheduleFires()
{
    QCOMPARE(SimulatedSchedules::timerDuration("PT00:90:00"), 90 * 60 * 1000);
    const QByteArray body = QStringLiteral(R"({"name":"all off","localtime":"PT00:00:01","autodelete":true,
        "command":{"address":"/api/%1/groups/0/action","method":"PUT","body":{"on":false}}})")
                                .arg(m_user)
                                .toUtf8();
    const Reply reply = send("POST", api("/schedules"), body);
    QCOMPARE(firstItem(reply).value("success").toObject().value("id").toString(), QStringLiteral("1"));
    QVERIFY(send("GET", api("/schedules")).json.object().contains("1"));
    QVERIFY(m_simulator->group("0").value("state").toObject().value("any_on").toBool());

    QTRY_VERIFY_WITH_TIMEOUT(!m_simulator->group("0").value("state").toObject().value("any_on").toBool(),
                             5000);
    QCOMPARE(send("GET", api("/schedules")).json.object(), QJsonObject()); // autodelete
}

void tst_BridgeSimulator::servedOrder()
{
    // Ids of the first list in @p body (lights come first in the full state too), in the order served.
    auto servedIds = [](const QByteArray& body, const QString& list = {}) {
        const QJsonObject object = QJsonDocument::fromJson(body).object();
        QStringList ids = list.isEmpty() ? object.keys() : object.value(list).toObject().keys();
        std::sort(ids.begin(), ids.end(), [&body](const QString& a, const QString& b) {
            return body.indexOf('"' + a.toUtf8() + "\":{") < body.indexOf('"' + b.toUtf8() + "\":{");
        });
        return ids;
    };
    const QStringList homeOrder{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "12", "11"};
    QCOMPARE(m_simulator->lightIds(), homeOrder);
    QCOMPARE(servedIds(send("GET", api("/lights")).body), homeOrder);
    QCOMPARE(servedIds(send("GET", api("")).body, "lights"), homeOrder);

    m_simulator->setRawResource("lights",
                                R"({"7":{"name":"b","state":{"on":true}},"3":{"name":"a","state":{}}})");
    QCOMPARE(m_simulator->lightIds(), (QStringList{"7", "3"}));
    QCOMPARE(servedIds(send("GET", api("/lights")).body), (QStringList{"7", "3"}));

    m_simulator->setRawResource("lights", "not json at all");
    QCOMPARE(send("GET", api("/lights")).body, QByteArray("not json at all"));
}

void tst_BridgeSimulator::faults_data()
{
    QTest::addColumn<BridgeSimulator::Fault>("fault");
    QTest::addColumn<int>("times");
    QTest::addColumn<QNetworkReply::NetworkError>("error");
    QTest::addColumn<int>("errorType"); // 0: the body is no JSON at all
    // Qt retries on a dropped keep-alive connection, so a drop must last to be seen.
    QTest::newRow("drop") << BridgeSimulator::Fault::DropConnection << -1
                          << QNetworkReply::RemoteHostClosedError << 0;
    QTest::newRow("garbage") << BridgeSimulator::Fault::GarbageBody << 1 << QNetworkReply::NoError << 0;
    QTest::newRow("error array") << BridgeSimulator::Fault::ErrorArray << 1 << QNetworkReply::NoError << 901;
}

void tst_BridgeSimulator::faults()
{
    QFETCH(BridgeSimulator::Fault, fault);
    QFETCH(int, times);
    QFETCH(QNetworkReply::NetworkError, error);
    QFETCH(int, errorType);
    QVERIFY(send("GET", api("/config")).json.isObject()); // a keep-alive connection is open now

    m_simulator->setFault(fault, times);
    const Reply reply = send("PUT", api("/lights/1/state"), R"({"on":false})");
    QCOMPARE(reply.error, error);
    if (errorType)
        QCOMPARE(firstItem(reply).value("error").toObject().value("type").toInt(), errorType);
    else
        QVERIFY(reply.json.isNull());
    QVERIFY(m_simulator->light("1").value("state").toObject().value("on").toBool()); // not applied

    if (times < 0)
        m_simulator->setFault(BridgeSimulator::Fault::None);
    const Reply after = send("PUT", api("/lights/1/state"), R"({"on":false})");
    QCOMPARE(after.error, QNetworkReply::NoError);
    QVERIFY2(firstItem(after).contains("success"), after.body.constData());
}

void tst_BridgeSimulator::latencyDoesNotBlock()
{
    m_simulator->setLatency(400);
    QElapsedTimer elapsed;
    elapsed.start();
    QNetworkRequest request(
        QUrl(QStringLiteral("http://%1%2").arg(m_simulator->hostAndPort(), api("/lights"))));
    std::unique_ptr<QNetworkReply> first(m_network.get(request));
    std::unique_ptr<QNetworkReply> second(m_network.get(request));
    // Both requests are taken in while the first answer is still held back.
    QTRY_COMPARE_WITH_TIMEOUT(m_simulator->requests().size(), 2, 5000);
    QVERIFY(!first->isFinished() && !second->isFinished());
    QTRY_VERIFY_WITH_TIMEOUT(first->isFinished() && second->isFinished(), 5000);
    QVERIFY(elapsed.elapsed() >= 400);
    QCOMPARE(first->error(), QNetworkReply::NoError);
    QCOMPARE(QJsonDocument::fromJson(second->readAll()).object().keys().size(), 12);
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
    QVERIFY(m_simulator->lightIds().isEmpty());
    QCOMPARE(send("GET", api("/lights")).body, QByteArray("{}"));

    QVERIFY2(m_simulator->loadHome(fileName, &error), qPrintable(error));
    QCOMPARE(m_simulator->lightIds().last(), QStringLiteral("11"));
    QCOMPARE(m_simulator->light("2"), light);
    QCOMPARE(m_simulator->users(), QStringList{m_user});
    QCOMPARE(send("GET", api("/lights/2")).json.object(), light);
}

void tst_BridgeSimulator::badHomeFile_data()
{
    QTest::addColumn<QByteArray>("content"); // null: no file at all
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing file") << QByteArray() << "No such file";
    QTest::newRow("not json") << QByteArray("{\"lights\":") << "not valid JSON";
    QTest::newRow("not an object") << QByteArray("[1,2]") << "not a JSON object";
    QTest::newRow("lights not an object")
        << QByteArray(R"({"lights":[1]})") << "\"lights\" is not a JSON object";
    QTest::newRow("light without state")
        << QByteArray(R"({"lights":{"1":{"name":"x"}}})") << "lights/1 has no \"state\" object";
    QTest::newRow("group of unknown light") << QByteArray(R"({"lights":{},"groups":{"1":{"lights":["5"]}}})")
                                            << "groups/1 lists light 5, which does not exist";
}

void tst_BridgeSimulator::badHomeFile()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    QTemporaryDir dir;
    const QString fileName = dir.filePath("home.json");
    if (!content.isNull()) {
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    const QStringList before = m_simulator->lightIds();
    QString error;
    QVERIFY(!m_simulator->loadHome(fileName, &error));
    QVERIFY2(error.contains(fileName) && error.contains(reason), qPrintable(error));
    QCOMPARE(m_simulator->lightIds(), before);
    QVERIFY(send("GET", api("/lights/1")).json.object().contains("state"));
}

QTEST_GUILESS_MAIN(tst_BridgeSimulator)
#include "tst_bridgesimulator.moc"
