#include "BridgeSimulator.h"
#include "SimulatedSchedules.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSslConfiguration>
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
    void busyBridgeRefusesChangesForAWhile();
    void homeRoundTrip();
    void badHomeFileChangesNothing_data();
    void badHomeFileChangesNothing();
    void eventStreamTellsEveryChange();
    void eventStreamRefusesWhereABridgeWould();
    void eventStreamEndsAndBreaks();
    void twoBridgesShareNothing();
    void v2ReadShowsTheHomeOfV1();
    void v2WriteShowsOverV1AndInEvents_data();
    void v2WriteShowsOverV1AndInEvents();
    void v2RefusesOnDemand();
    void programRunsTheBridgesAskedFor_data();
    void programRunsTheBridgesAskedFor();

private:
    struct Reply
    {
        QNetworkReply::NetworkError error = QNetworkReply::NoError;
        int status = 0; ///< the HTTP status, 0 without an answer
        QByteArray body;
        QJsonDocument json;
    };

    /// Sends to @p bridge, m_simulator when none.
    Reply send(const QByteArray& method, const QString& path, const QByteArray& body = {},
               const BridgeSimulator* bridge = nullptr);
    QString api(const QString& rest) const { return QStringLiteral("/api/") + m_user + rest; }
    /// Sends to the version-2 interface of @p bridge (m_simulator when none) over HTTPS with @p key.
    Reply sendV2(const QByteArray& method, const QString& path, const QByteArray& body = {},
                 const QByteArray& key = "tester0123456789", BridgeSimulator* bridge = nullptr);
    /// The version-2 resources of a read, by "<type> <id_v1 or id>".
    static QHash<QString, QJsonObject> byKey(const Reply& reply);
    /// The object under @p key in the first item of the answer ("success" or "error").
    static QJsonObject first(const Reply& r, const QString& key) { return r.json[0][key].toObject(); }

    /// A client of the event stream, reading each piece as it comes.
    struct Listener
    {
        std::unique_ptr<QNetworkReply> reply;
        QByteArray text;          ///< all received so far
        qsizetype parsed = 0;     ///< how much of text was split into events
        QList<QJsonArray> events; ///< the data of each complete event
        QList<QByteArray> broken; ///< data that is no JSON array
    };
    /// Opens the event stream of @p bridge (m_simulator when none) over HTTPS (or plain HTTP) with @p key,
    /// trusting the authorities of m_trusted, or else the bridge's own.
    std::unique_ptr<Listener> listen(const QByteArray& key, bool https = true,
                                     BridgeSimulator* bridge = nullptr);
    /// The resources of one event by "<container type> <resource type> <id_v1>".
    static QHash<QString, QJsonObject> resources(const QJsonArray& event);
    /// The value at "on.on" or "children.0.rid" in @p object.
    static QJsonValue at(const QJsonObject& object, const QString& path);

    std::unique_ptr<BridgeSimulator> m_simulator;
    QNetworkAccessManager m_network;
    QList<QSslCertificate> m_trusted;
    QString m_user = QStringLiteral("tester0123456789");
};

tst_BridgeSimulator::Reply tst_BridgeSimulator::send(const QByteArray& method, const QString& path,
                                                     const QByteArray& body, const BridgeSimulator* bridge)
{
    bridge = bridge ? bridge : m_simulator.get();
    QNetworkRequest request(QUrl(QStringLiteral("http://%1%2").arg(bridge->hostAndPort(), path)));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    request.setTransferTimeout(10'000);
    std::unique_ptr<QNetworkReply> reply(m_network.sendCustomRequest(request, method, body));
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    if (!reply->isFinished())
        finished.wait(15'000);
    const QByteArray answer = reply->readAll();
    return {reply->error(), reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), answer,
            QJsonDocument::fromJson(answer)};
}

tst_BridgeSimulator::Reply tst_BridgeSimulator::sendV2(const QByteArray& method, const QString& path,
                                                       const QByteArray& body, const QByteArray& key,
                                                       BridgeSimulator* bridge)
{
    bridge = bridge ? bridge : m_simulator.get();
    if (bridge->tlsPort() == 0)
        bridge->listenTls();
    QNetworkRequest request(QUrl(bridge->httpsAddress() + path));
    request.setRawHeader("hue-application-key", key);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    request.setTransferTimeout(10'000);
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates({bridge->authorityCertificate()});
    request.setSslConfiguration(tls);
    std::unique_ptr<QNetworkReply> reply(m_network.sendCustomRequest(request, method, body));
    connect(reply.get(), &QNetworkReply::sslErrors, [&reply](const QList<QSslError>& errors) {
        if (std::all_of(errors.begin(), errors.end(),
                        [](const QSslError& e) { return e.error() == QSslError::HostNameMismatch; }))
            reply->ignoreSslErrors(errors);
    });
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    if (!reply->isFinished())
        finished.wait(15'000);
    const QByteArray answer = reply->readAll();
    return {reply->error(), reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), answer,
            QJsonDocument::fromJson(answer)};
}

QHash<QString, QJsonObject> tst_BridgeSimulator::byKey(const Reply& reply)
{
    QHash<QString, QJsonObject> found;
    for (const QJsonValue item : reply.json["data"].toArray()) {
        const QJsonObject resource = item.toObject();
        const QString name =
            resource.contains("id_v1") ? resource["id_v1"].toString() : resource["id"].toString();
        found.insert(resource["type"].toString() + ' ' + name, resource);
    }
    return found;
}

void tst_BridgeSimulator::init()
{
    m_simulator = std::make_unique<BridgeSimulator>();
    QVERIFY2(m_simulator->listen(QHostAddress::LocalHost, 0), qPrintable(m_simulator->errorString()));
    QVERIFY(m_simulator->registerUser(m_user));
    m_network.clearConnectionCache();
    m_trusted.clear();
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
    QTest::newRow("a schedule's name beyond 32 characters")
        << R"(POST /api/%1/schedules {"name":"Lights off at the end of the evening",)"
           R"("localtime":"PT00:05:00","command":{"address":"/api/%1/groups/0/action","method":"PUT",)"
           R"("body":{"on":false}}})"
        << 7 << "/schedules/name";
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

void tst_BridgeSimulator::busyBridgeRefusesChangesForAWhile()
{
    m_simulator->setBusyAfterChange(600'000);
    QCOMPARE(send("GET", api("/lights")).status, 200); // a read starts no spell
    QCOMPARE(first(send("PUT", api("/lights/1/state"), R"({"on":false})"), "success").size(), 1);
    // The spell runs: changes of every kind are refused and change nothing; reads are answered.
    const QJsonObject lamp = m_simulator->light("1");
    const QStringList schedules = m_simulator->scheduleIds();
    for (const auto& [method, path, body] :
         {std::tuple("PUT", "/lights/1/state", R"({"on":true})"),
          std::tuple("POST", "/schedules", R"({"localtime":"PT00:10:00","command":{}})"),
          std::tuple("DELETE", "/scenes/1", "")})
        QCOMPARE(send(method, api(path), body).status, 429);
    QCOMPARE(m_simulator->light("1"), lamp);
    QCOMPARE(m_simulator->scheduleIds(), schedules);
    QCOMPARE(send("GET", api("/lights/1")).json["state"]["on"].toBool(true), false);

    // Armed again with a short spell: once it is over, changes are taken again.
    m_simulator->setBusyAfterChange(50);
    QCOMPARE(send("PUT", api("/lights/1/state"), R"({"on":true})").status, 200);
    QTRY_COMPARE_WITH_TIMEOUT(send("PUT", api("/lights/1/state"), R"({"bri":100})").status, 200, 10'000);
    QCOMPARE(m_simulator->light("1").value("state").toObject().value("bri").toInt(), 100);
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

std::unique_ptr<tst_BridgeSimulator::Listener> tst_BridgeSimulator::listen(const QByteArray& key, bool https,
                                                                           BridgeSimulator* bridge)
{
    bridge = bridge ? bridge : m_simulator.get();
    if (https && bridge->tlsPort() == 0)
        bridge->listenTls();
    const QString base = https ? bridge->httpsAddress() : bridge->httpAddress();
    QNetworkRequest request(QUrl(base + "/eventstream/clip/v2"));
    if (!key.isNull())
        request.setRawHeader("hue-application-key", key);
    request.setRawHeader("Accept", "text/event-stream");
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates(m_trusted.isEmpty() ? QList<QSslCertificate>{bridge->authorityCertificate()}
                                              : m_trusted);
    request.setSslConfiguration(tls);
    auto listener = std::make_unique<Listener>();
    Listener* l = listener.get();
    l->reply.reset(m_network.get(request));
    // A bridge's certificate names its id, not its address; everything else about it must hold.
    connect(l->reply.get(), &QNetworkReply::sslErrors, [l](const QList<QSslError>& errors) {
        if (std::all_of(errors.begin(), errors.end(),
                        [](const QSslError& e) { return e.error() == QSslError::HostNameMismatch; }))
            l->reply->ignoreSslErrors(errors);
    });
    connect(l->reply.get(), &QNetworkReply::readyRead, [l] {
        l->text += l->reply->readAll();
        for (qsizetype end; (end = l->text.indexOf("\n\n", l->parsed)) >= 0; l->parsed = end + 2) {
            QByteArray data;
            for (const QByteArray& line : l->text.mid(l->parsed, end - l->parsed).split('\n'))
                if (line.startsWith("data: "))
                    data += line.mid(6);
            const QJsonDocument document = QJsonDocument::fromJson(data);
            if (document.isArray())
                l->events.append(document.array());
            else if (!data.isEmpty())
                l->broken.append(data);
        }
    });
    return listener;
}

QHash<QString, QJsonObject> tst_BridgeSimulator::resources(const QJsonArray& event)
{
    QHash<QString, QJsonObject> found;
    for (const QJsonValue container : event) {
        const QJsonObject resource = container["data"][0].toObject();
        found.insert(container["type"].toString() + ' ' + resource["type"].toString() + ' ' +
                         resource["id_v1"].toString(),
                     resource);
    }
    return found;
}

QJsonValue tst_BridgeSimulator::at(const QJsonObject& object, const QString& path)
{
    QJsonValue value = object;
    for (const QString& step : path.split(u'.')) {
        bool index = false;
        const int i = step.toInt(&index);
        value = index ? value[i] : value[step];
    }
    return value;
}

void tst_BridgeSimulator::eventStreamTellsEveryChange()
{
    const std::unique_ptr<Listener> app = listen(m_user.toUtf8());
    const std::unique_ptr<Listener> other = listen(m_user.toUtf8());
    QTRY_VERIFY_WITH_TIMEOUT(app->text.startsWith(": hi\n\n") && other->text.startsWith(": hi\n\n"), 10'000);
    QVERIFY(!app->reply->isFinished()); // the greeting came while the answer goes on
    QCOMPARE(app->reply->header(QNetworkRequest::ContentTypeHeader).toString(), "text/event-stream");
    QCOMPARE(app->reply->rawHeader("Cache-Control"), "no-cache");
    QCOMPARE(m_simulator->eventStreamListeners(), 2);
    QCOMPARE(m_simulator->requests().size(), 2); // reads like any other
    QCOMPARE(m_simulator->requests().first().path, "/eventstream/clip/v2");

    // Each step: one change (a request of ours or of another app, or the simulator's own), one event.
    int steps = 0; // one event each: all that one change did arrives together
    auto step = [&](auto&& change) {
        const qsizetype before = app->events.size();
        ++steps;
        change();
        return QTest::qWaitFor([&] { return app->events.size() > before; }, 10'000)
                   ? resources(app->events.at(before))
                   : QHash<QString, QJsonObject>{};
    };
    auto events = step([&] { send("PUT", api("/lights/1/state"), R"({"bri":127,"ct":300})"); });
    // The lamp, and the mean brightness of each group that holds it.
    QStringList keys = events.keys();
    keys.sort();
    QCOMPARE(keys, QStringList({"update grouped_light /groups/0", "update grouped_light /groups/1",
                                "update grouped_light /groups/5", "update grouped_light /groups/6",
                                "update light /lights/1"}));
    QJsonObject light = events.value("update light /lights/1");
    QCOMPARE(at(light, "dimming.brightness").toDouble(), 50.0);
    QCOMPARE(at(light, "color_temperature").toObject(), QJsonObject({{"mirek", 300}, {"mirek_valid", true}}));
    QVERIFY(!light.contains("on") && at(light, "owner.rtype") == "device" &&
            !at(light, "id").toString().isEmpty());
    const QString lightId = at(light, "id").toString();

    const qsizetype recorded = m_simulator->requests().size();
    events = step([&] {
        const Reply reply = send("POST", "/__control/external/lights/1/state", R"({"xy":[0.3,0.31]})");
        QCOMPARE(first(reply, "success").value("/lights/1/state/xy").toArray(), QJsonArray({0.3, 0.31}));
    });
    QCOMPARE(m_simulator->requests().size(), recorded);
    light = events.value("update light /lights/1");
    QCOMPARE(at(light, "id").toString(), lightId); // the same lamp, the same id
    QCOMPARE(at(light, "color.xy").toObject(), QJsonObject({{"x", 0.3}, {"y", 0.31}}));
    QCOMPARE(at(light, "color_temperature").toObject(),
             QJsonObject({{"mirek", QJsonValue()}, {"mirek_valid", false}}));

    events = step([&] { send("PUT", api("/groups/3/action"), R"({"on":false,"bri":127})"); });
    QCOMPARE(at(events.value("update grouped_light /groups/3"), "on.on"), false);
    QCOMPARE(at(events.value("update grouped_light /groups/3"), "dimming.brightness"), 50);
    for (const char* id : {"6", "7"}) // 8 was at 127 already, and says nothing of it
        QCOMPARE(at(events.value(QStringLiteral("update light /lights/") + id), "dimming.brightness"), 50);
    QCOMPARE(at(events.value("update light /lights/8"), "on.on"), false);
    QVERIFY(!events.value("update light /lights/8").contains("dimming"));

    events = step([&] { send("PUT", api("/groups/1/action"), R"({"scene":"xR4tB1kVn2QmZ8a"})"); });
    QCOMPARE(at(events.value("update light /lights/3"), "on.on"), true);
    QCOMPARE(at(events.value("update light /lights/3"), "color.xy.x"), 0.5019);

    events = step([&] { send("PUT", api("/lights/2"), R"({"name":"Reading"})"); });
    QCOMPARE(at(events.value("update light /lights/2"), "metadata.name"), "Reading");
    events = step([&] { send("PUT", api("/scenes/xR4tB1kVn2QmZ8a"), R"({"name":"Calm"})"); });
    QCOMPARE(at(events.value("update scene /scenes/xR4tB1kVn2QmZ8a"), "metadata.name"), "Calm");
    events = step([&] { send("PUT", api("/groups/5"), R"({"name":"Ground floor","lights":["1"]})"); });
    QCOMPARE(at(events.value("update zone /groups/5"), "metadata.name"), "Ground floor");
    QCOMPARE(at(events.value("update zone /groups/5"), "children.0.rid").toString(), lightId);
    events = step([&] { m_simulator->setLightReachable("9", false); });
    QCOMPARE(at(events.value("update zigbee_connectivity /lights/9"), "status"), "connectivity_issue");

    m_simulator->setEventMergeInterval(2000); // as a bridge collects: two requests, one event
    events = step([&] {
        for (const char* light : {"/lights/9/state", "/lights/11/state"})
            send("PUT", api(light), R"({"bri":3})");
    });
    QVERIFY(events.contains("update light /lights/9") && events.contains("update light /lights/11"));
    m_simulator->setEventMergeInterval(0);

    const QString dropped = m_simulator->sceneIds().at(1);
    events = step([&] {
        m_simulator->setRawResource("scenes", R"({"xR4tB1kVn2QmZ8a":{"name":"Calm","type":"GroupScene",
            "group":"1","lights":["1"]},"N3w":{"name":"New","type":"GroupScene","group":"2","lights":["4"]}})");
    });
    QCOMPARE(at(events.value("delete scene /scenes/" + dropped), "id_v1").toString(), "/scenes/" + dropped);
    QCOMPARE(at(events.value("add scene /scenes/N3w"), "metadata.name"), "New");
    QCOMPARE(at(events.value("add scene /scenes/N3w"), "group.rtype"), "room");
    QVERIFY(!events.value("update scene /scenes/xR4tB1kVn2QmZ8a").contains("metadata")); // its lamps only

    QTRY_COMPARE_WITH_TIMEOUT(other->events.size(), steps, 10'000);
    QCOMPARE(app->events.size(), steps);
    QCOMPARE(other->events.last(), app->events.last());
    QVERIFY(other->broken.isEmpty() && app->broken.isEmpty());
    QVERIFY(QRegularExpression(R"(\nid: \d{10}:\d+\ndata: \[)").match(app->text).hasMatch());
}

void tst_BridgeSimulator::eventStreamRefusesWhereABridgeWould()
{
    auto status = [](const std::unique_ptr<Listener>& listener) {
        if (!listener->reply->isFinished())
            QSignalSpy(listener->reply.get(), &QNetworkReply::finished).wait(10'000);
        return listener->reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    };
    QCOMPARE(status(listen("nobody")), 403);
    QCOMPARE(status(listen(QByteArray())), 403);
    QCOMPARE(status(listen(m_user.toUtf8(), false)), 404); // a first-generation bridge has none
    m_simulator->setEventStreamMode(BridgeSimulator::EventStreamMode::Off);
    QCOMPARE(status(listen(m_user.toUtf8())), 404);
    QCOMPARE(m_simulator->eventStreamListeners(), 0);
    QCOMPARE(m_simulator->requests().size(), 4);
}

void tst_BridgeSimulator::eventStreamEndsAndBreaks()
{
    m_simulator->setEventStreamKeepAliveInterval(100);
    m_simulator->setEventStreamMode(BridgeSimulator::EventStreamMode::Malformed);
    const std::unique_ptr<Listener> broken = listen(m_user.toUtf8());
    QTRY_VERIFY_WITH_TIMEOUT(broken->text.contains(": keep-alive\n\n"), 10'000);
    for (const char* body : {R"({"on":true})", R"({"on":false})"})
        send("POST", "/__control/external/lights/5/state", body);
    QTRY_COMPARE_WITH_TIMEOUT(broken->broken.size(), 2, 10'000); // and it went on after the first
    QVERIFY(broken->events.isEmpty());

    m_simulator->setEventStreamMode(BridgeSimulator::EventStreamMode::Normal);
    m_simulator->setEventStreamLifetime(1);
    const std::unique_ptr<Listener> shortLived = listen(m_user.toUtf8());
    QTRY_COMPARE_WITH_TIMEOUT(m_simulator->eventStreamListeners(), 2, 10'000);
    QTRY_VERIFY_WITH_TIMEOUT(shortLived->reply->isFinished(), 10'000);
    QCOMPARE(shortLived->reply->error(), QNetworkReply::NoError); // ended properly, after the greeting
    QVERIFY(shortLived->text.startsWith(": hi\n\n"));
    QCOMPARE(m_simulator->eventStreamListeners(), 1);

    m_simulator->dropEventStreams(); // as a bridge that restarts
    QTRY_VERIFY_WITH_TIMEOUT(broken->reply->isFinished(), 10'000);
    QCOMPARE(m_simulator->eventStreamListeners(), 0);
}

void tst_BridgeSimulator::twoBridgesShareNothing()
{
    BridgeSimulator& ground = *m_simulator;
    BridgeSimulator upper(BridgeSimulator::Floor::Upper);
    QVERIFY(upper.listen() && upper.listenTls() && ground.listenTls());
    QCOMPARE(QSet<quint16>({ground.port(), ground.tlsPort(), upper.port(), upper.tlsPort()}).size(), 4);
    QVERIFY(upper.bridgeId() != ground.bridgeId());
    // Two homes with a lamp "1" and a "Living room" each, as real ones have; not the same lamps.
    QCOMPARE(upper.group("1").value("name"), ground.group("1").value("name"));
    QVERIFY(upper.light("1").value("uniqueid") != ground.light("1").value("uniqueid"));
    upper.setBridgeId(QStringLiteral("001788FFFE9C4D5F"));
    upper.loadDefaultHome(); // its own floor's, and still its own id
    QCOMPARE(upper.lightIds().size(), 5);
    QCOMPARE(upper.bridgeId(), QStringLiteral("001788FFFE9C4D5F"));

    // Its own users and schedules.
    QCOMPARE(first(send("GET", api("/lights"), {}, &upper), "error").value("type").toInt(), 1);
    const QString upperUser = upper.addUser();
    QVERIFY(!ground.users().contains(upperUser) && !upper.users().contains(m_user));
    const QJsonObject timer{{"localtime", "PT00:10:00"},
                            {"command", QJsonObject{{"address", api("/groups/0/action")},
                                                    {"method", "PUT"},
                                                    {"body", QJsonObject{{"on", false}}}}}};
    QVERIFY(!ground.addSchedule(timer).isEmpty());
    QVERIFY(upper.scheduleIds().isEmpty());

    // Its own home and event stream; a client that trusts both authorities is shown each bridge's own
    // certificate.
    m_trusted = {ground.authorityCertificate(), upper.authorityCertificate()};
    const std::unique_ptr<Listener> groundEvents = listen(m_user.toUtf8(), true, &ground);
    const std::unique_ptr<Listener> upperEvents = listen(upperUser.toUtf8(), true, &upper);
    QTRY_VERIFY_WITH_TIMEOUT(groundEvents->text.startsWith(": hi") && upperEvents->text.startsWith(": hi"),
                             10'000);
    for (const auto& [listener, bridge] :
         {std::pair(groundEvents.get(), &ground), std::pair(upperEvents.get(), &upper)})
        QCOMPARE(
            listener->reply->sslConfiguration().peerCertificate().subjectInfo(QSslCertificate::CommonName),
            QStringList{bridge->bridgeId()});
    const QJsonObject upperLamp = upper.light("1");
    QCOMPARE(first(send("PUT", api("/lights/1/state"), R"({"on":false})"), "success").size(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(groundEvents->events.size(), 1, 10'000);
    QCOMPARE(upper.light("1"), upperLamp);
    QCOMPARE(send("POST", "/__control/external/lights/1/state", R"({"bri":10})", &upper).error,
             QNetworkReply::NoError);
    QTRY_COMPARE_WITH_TIMEOUT(upperEvents->events.size(), 1, 10'000);
    const QJsonObject groundLight = resources(groundEvents->events.first()).value("update light /lights/1");
    const QJsonObject upperLight = resources(upperEvents->events.first()).value("update light /lights/1");
    QVERIFY(!groundLight.contains("dimming") && !upperLight.contains("on"));
    QVERIFY(at(groundLight, "id") != at(upperLight, "id")); // the same address, another lamp
    QCOMPARE(groundEvents->events.size(), 1);
}

void tst_BridgeSimulator::programRunsTheBridgesAskedFor_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QStringList>("ids"); // the bridges it listens as, in order
    QTest::addColumn<QString>("refusal"); // or the message it exits 2 with
    const QString first = QStringLiteral("001788FFFE6A3B2C");
    const QString upper = QStringLiteral("001788FFFE9C4D5E");
    QTest::newRow("one") << "" << QStringList{first} << "";
    QTest::newRow("two floors") << "--bridges 2" << QStringList{first, upper} << "";
    QTest::newRow("three") << "--bridges 3" << QStringList{first, upper, "001788FFFE6A3B2D"} << "";
    QTest::newRow("named") << "--bridge-id 001788fffe000001 --bridge-id 001788FFFE000002"
                           << QStringList{"001788FFFE000001", "001788FFFE000002"} << "";
    QTest::newRow("an id for two") << "--bridges 2 --bridge-id 001788fffe000001" << QStringList()
                                   << "--bridge-id takes one value for each bridge: 1 given for 2";
    QTest::newRow("two ids for one")
        << "--bridges 1 --bridge-id 001788fffe000001 --bridge-id 001788fffe000002" << QStringList()
        << "2 given for 1 bridge\n";
    QTest::newRow("one id twice") << "--bridge-id " + first + " --bridge-id " + first << QStringList()
                                  << "two bridges would have the id " + first;
    QTest::newRow("ports for three") << "--bridges 2 --port 0 --port 0 --port 0" << QStringList()
                                     << "--port takes one value for every bridge, or one for each";
    QTest::newRow("no row of ports") << "--bridges 2 --port 65535" << QStringList()
                                     << "--port 65535 leaves no room for a row of 2 ports";
    QTest::newRow("no bridges") << "--bridges 0" << QStringList() << "--bridges needs a number";
    QTest::newRow("busy for ever") << "--busy-for -1" << QStringList() << "--busy-for needs seconds";
}

void tst_BridgeSimulator::programRunsTheBridgesAskedFor()
{
    QFETCH(QString, arguments);
    QFETCH(QStringList, ids);
    QFETCH(QString, refusal);
    QTemporaryDir folder;
    const QString authority = folder.filePath("authority.pem");
    QProcess program;
    program.start(SIMULATOR_PROGRAM,
                  arguments.split(u' ', Qt::SkipEmptyParts) +
                      QStringList{"--tls-port", "0", "--write-authority", authority, "--user", m_user});
    QVERIFY(program.waitForStarted(10'000));
    if (!refusal.isEmpty()) {
        QVERIFY(program.waitForFinished(10'000));
        QCOMPARE(program.exitCode(), 2);
        const QString error = QString::fromUtf8(program.readAllStandardError());
        QVERIFY2(error.contains(refusal), qPrintable(error));
        return;
    }
    QByteArray output;
    QTRY_VERIFY_WITH_TIMEOUT((output += program.readAllStandardOutput()).count("listening") == 2 * ids.size(),
                             10'000);
    QStringList listening;
    QSet<QString> ports;
    const QRegularExpression line(R"(listening (on|for HTTPS on) 127\.0\.0\.1:(\d+) \(bridge (\w+)\))");
    for (const QRegularExpressionMatch& match : line.globalMatch(QString::fromUtf8(output))) {
        ports.insert(match.captured(2));
        const bool https = match.captured(1) != "on";
        if (!https)
            listening.append(match.captured(3));
        // Each bridge answers as itself, over HTTPS with a certificate of the one authority for them all.
        QNetworkRequest request(QUrl(QStringLiteral("%1://127.0.0.1:%2/api/%3/config")
                                         .arg(https ? "https" : "http", match.captured(2), m_user)));
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setCaCertificates(QSslCertificate::fromPath(authority));
        request.setSslConfiguration(tls);
        request.setPeerVerifyName(match.captured(3).toLower());
        std::unique_ptr<QNetworkReply> reply(m_network.get(request));
        QTRY_VERIFY_WITH_TIMEOUT(reply->isFinished(), 10'000);
        QVERIFY2(reply->error() == QNetworkReply::NoError, qPrintable(reply->errorString()));
        QCOMPARE(QJsonDocument::fromJson(reply->readAll())["bridgeid"].toString(), match.captured(3));
    }
    QCOMPARE(listening, ids);
    QCOMPARE(ports.size(), 2 * ids.size());
    program.terminate();
    QVERIFY(program.waitForFinished(10'000));
    QCOMPARE(program.exitCode(), 0);
}

QTEST_GUILESS_MAIN(tst_BridgeSimulator)
#include "tst_bridgesimulator.moc"

void tst_BridgeSimulator::v2ReadShowsTheHomeOfV1()
{
    const Reply all = sendV2("GET", "/clip/v2/resource");
    QCOMPARE(all.status, 200);
    QCOMPARE(all.json["errors"].toArray(), QJsonArray());
    const QHash<QString, QJsonObject> home = byKey(all);

    // The same lamps, each with what it can do and nothing more.
    for (const QString& id : m_simulator->lightIds()) {
        const QJsonObject v1 = m_simulator->light(id);
        const QJsonObject state = v1["state"].toObject();
        const QJsonObject light = home.value("light /lights/" + id);
        QCOMPARE(light["metadata"]["name"], v1["name"]);
        QCOMPARE(light["on"]["on"], state["on"]);
        QCOMPARE(light.contains("dimming"), state.contains("bri"));
        QCOMPARE(light.contains("color"), state.contains("xy"));
        QCOMPARE(light["color_temperature"]["mirek_schema"].isObject(), state.contains("ct"));
        if (state.contains("bri"))
            QCOMPARE(qRound(light["dimming"]["brightness"].toDouble() * 2.54), state["bri"].toInt());
        const QJsonObject device = home.value("device /lights/" + id);
        QCOMPARE(light["owner"]["rid"], device["id"]);
        QCOMPARE(device["product_data"]["model_id"], v1["modelid"]);
        QCOMPARE(home.value("zigbee_connectivity /lights/" + id)["status"].toString(),
                 state["reachable"].toBool() ? "connected" : "connectivity_issue");
    }
    QVERIFY(!home.value("light /lights/10").contains("dimming")); // the plug
    QCOMPARE(at(home.value("light /lights/1"), "color.gamut_type"), "C");

    // Rooms hold devices, zones lights; every room, zone and the home has its grouped light.
    const QJsonObject kitchen = home.value("room /groups/2");
    QCOMPARE(kitchen["metadata"]["name"], "Kitchen");
    QCOMPARE(kitchen["children"][1]["rid"], home.value("device /lights/5")["id"]);
    QCOMPARE(kitchen["services"][0]["rid"], home.value("grouped_light /groups/2")["id"]);
    QCOMPARE(home.value("zone /groups/5")["children"][3]["rid"], home.value("light /lights/12")["id"]);
    const QJsonObject everything = home.value("bridge_home /groups/0");
    QCOMPARE(everything["services"][0]["rid"], home.value("grouped_light /groups/0")["id"]);
    QCOMPARE(everything["children"].toArray().size(), 4 + 1 + 2); // rooms, the hall lamp, switches
    QVERIFY(!home.contains("grouped_light /groups/6"));           // a v1 light group is nothing of version 2
    QCOMPARE(at(home.value("grouped_light /groups/3"), "dimming.brightness"),
             40.16); // 6 and 8 lit, 7 off at full

    // The scenes of a room or zone, and the switches with their batteries.
    const QJsonObject relax = home.value("scene /scenes/xR4tB1kVn2QmZ8a");
    QCOMPARE(relax["group"]["rid"], home.value("room /groups/1")["id"]);
    QCOMPARE(relax["status"]["active"], "inactive");
    QCOMPARE(relax["palette"]["color"].toArray().size(), 1);
    QCOMPARE(relax["actions"].toArray().size(), 3);
    QVERIFY(!home.contains("scene /scenes/Sav4nnaSunset01"));
    int batteries = 0;
    for (const QJsonObject& resource : home) {
        if (resource["type"] == "device_power") {
            ++batteries;
            QVERIFY(!resource.contains("id_v1"));
            QVERIFY(resource["power_state"]["battery_level"].toInt() > 0);
        } else if (resource["type"] == "smart_scene") {
            QCOMPARE(resource["group"]["rid"], home.value("room /groups/1")["id"]);
            QCOMPARE(resource["state"], "inactive");
        }
    }
    QCOMPARE(batteries, 2);

    // By type and by id, the same; ids stay with the bridge id, whichever simulator serves it.
    QCOMPARE(sendV2("GET", "/clip/v2/resource/light").json["data"].toArray().size(), 12);
    const QString id = home.value("light /lights/3")["id"].toString();
    QCOMPARE(sendV2("GET", "/clip/v2/resource/light/" + id).json["data"][0].toObject(),
             home.value("light /lights/3"));
    BridgeSimulator again;
    QVERIFY(again.registerUser(m_user));
    QCOMPARE(
        byKey(sendV2("GET", "/clip/v2/resource/room", {}, m_user.toUtf8(), &again)).value("room /groups/1"),
        home.value("room /groups/1"));

    // As a bridge refuses.
    QCOMPARE(sendV2("GET", "/clip/v2/resource", {}, "nobody").json["errors"][0]["description"],
             "unauthorized user");
    QCOMPARE(sendV2("GET", "/clip/v2/resource", {}, {}).status, 403);
    QCOMPARE(sendV2("GET", "/clip/v2/resource/light/" + home.value("room /groups/1")["id"].toString()).status,
             404);
    QCOMPARE(sendV2("GET", "/clip/v2/resource/lamp").status, 404);
    QCOMPARE(sendV2("GET", "/clip/v2/resource/motion").json["data"].toArray(), QJsonArray());
}

void tst_BridgeSimulator::v2WriteShowsOverV1AndInEvents_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("v1Path"); // what a v1 read shows afterwards, "" for nothing to check
    QTest::addColumn<QJsonValue>("v1Value");

    QTest::newRow("light on, dimmed")
        << "light"
        << "/lights/3" << QByteArray(R"({"on":{"on":true},"dimming":{"brightness":50}})") << 200
        << "/lights/3.state.bri" << QJsonValue(127);
    QTest::newRow("light colour") << "light"
                                  << "/lights/1"
                                  << QByteArray(
                                         R"({"color":{"xy":{"x":0.3,"y":0.31}},"dynamics":{"duration":400}})")
                                  << 200 << "/lights/1.state.xy" << QJsonValue(QJsonArray{0.3, 0.31});
    QTest::newRow("light white tone") << "light"
                                      << "/lights/4" << QByteArray(R"({"color_temperature":{"mirek":250}})")
                                      << 200 << "/lights/4.state.ct" << QJsonValue(250);
    QTest::newRow("light brighter") << "light"
                                    << "/lights/1"
                                    << QByteArray(
                                           R"({"dimming_delta":{"action":"up","brightness_delta":10}})")
                                    << 200 << "/lights/1.state.bri" << QJsonValue(225);
    QTest::newRow("light warmer") << "light"
                                  << "/lights/4"
                                  << QByteArray(
                                         R"({"color_temperature_delta":{"action":"up","mirek_delta":100}})")
                                  << 200 << "/lights/4.state.ct" << QJsonValue(333);
    QTest::newRow("room") << "grouped_light"
                          << "/groups/3" << QByteArray(R"({"on":{"on":false}})") << 200
                          << "/lights/8.state.on" << QJsonValue(false);
    QTest::newRow("zone") << "grouped_light"
                          << "/groups/5" << QByteArray(R"({"dimming":{"brightness":100}})") << 200
                          << "/lights/4.state.bri" << QJsonValue(254);
    QTest::newRow("whole home") << "grouped_light"
                                << "/groups/0" << QByteArray(R"({"on":{"on":true}})") << 200
                                << "/lights/7.state.on" << QJsonValue(true);
    QTest::newRow("scene") << "scene"
                           << "/scenes/c0ncEntrAte4Kit" << QByteArray(R"({"recall":{"action":"active"}})")
                           << 200 << "/lights/4.state.ct" << QJsonValue(233);
    QTest::newRow("scene dynamic") << "scene"
                                   << "/scenes/xR4tB1kVn2QmZ8a"
                                   << QByteArray(R"({"recall":{"action":"dynamic_palette"},"speed":0.8})")
                                   << 200 << "/lights/3.state.bri" << QJsonValue(144);
    QTest::newRow("smart scene") << "smart_scene"
                                 << "/groups/1" << QByteArray(R"({"recall":{"action":"activate"}})") << 200
                                 << "/lights/1.state.on" << QJsonValue(true);
    QTest::newRow("brightness too high") << "light"
                                         << "/lights/3" << QByteArray(R"({"dimming":{"brightness":101}})")
                                         << 400 << "/lights/3.state.bri" << QJsonValue(120);
    QTest::newRow("plug dimmed") << "light"
                                 << "/lights/10" << QByteArray(R"({"dimming":{"brightness":10}})") << 400
                                 << "" << QJsonValue();
    QTest::newRow("not json") << "light"
                              << "/lights/3" << QByteArray("{on") << 400 << "" << QJsonValue();
    QTest::newRow("on not a flag") << "grouped_light"
                                   << "/groups/1" << QByteArray(R"({"on":{"on":"yes"}})") << 400
                                   << "/lights/3.state.on" << QJsonValue(false);
    QTest::newRow("mirek out of range")
        << "light"
        << "/lights/4" << QByteArray(R"({"color_temperature":{"mirek":600}})") << 400 << "" << QJsonValue();
    QTest::newRow("unknown recall") << "scene"
                                    << "/scenes/xR4tB1kVn2QmZ8a"
                                    << QByteArray(R"({"recall":{"action":"go"}})") << 400 << ""
                                    << QJsonValue();
}

void tst_BridgeSimulator::v2WriteShowsOverV1AndInEvents()
{
    QFETCH(QString, type);
    QFETCH(QString, address);
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    QFETCH(QString, v1Path);
    QFETCH(QJsonValue, v1Value);

    const std::unique_ptr<Listener> listener = listen(m_user.toUtf8());
    QTRY_VERIFY_WITH_TIMEOUT(listener->text.startsWith(": hi\n\n"), 10'000);
    const QString id = m_simulator->v2Id(type, address);
    const Reply reply = sendV2("PUT", "/clip/v2/resource/" + type + '/' + id, body);
    QCOMPARE(reply.status, status);
    if (status == 200) {
        QCOMPARE(reply.json["data"].toArray(), QJsonArray({QJsonObject{{"rid", id}, {"rtype", type}}}));
        QCOMPARE(reply.json["errors"].toArray(), QJsonArray());
    } else {
        QVERIFY(!reply.json["errors"][0]["description"].toString().isEmpty());
    }
    if (!v1Path.isEmpty()) {
        const QStringList parts = v1Path.split('.');
        const Reply v1 = send("GET", api(parts.first()));
        QCOMPARE(at(v1.json.object(), parts.mid(1).join('.')), v1Value);
    }

    // The same event as a change over version 1 makes; a refused write makes none.
    send("PUT", api("/lights/11/state"), R"({"on":false})");
    QTRY_VERIFY_WITH_TIMEOUT(!listener->events.isEmpty(), 10'000);
    const QHash<QString, QJsonObject> events = resources(listener->events.first());
    if (status != 200) {
        QVERIFY(events.contains("update light /lights/11"));
        QVERIFY(!events.contains("update " + type + ' ' + address));
    } else if (type == u"light") {
        QCOMPARE(at(events.value("update light " + address), "id").toString(), id);
    } else if (type == u"grouped_light") {
        QCOMPARE(at(events.value("update grouped_light " + address), "id").toString(), id);
    } else if (type == u"scene") {
        QVERIFY(at(events.value("update scene " + address), "status.active").toString() != "inactive");
    } else {
        QCOMPARE(at(events.value("update smart_scene "), "state"), "active");
    }
}

void tst_BridgeSimulator::v2RefusesOnDemand()
{
    const QString kitchen = m_simulator->v2Id("grouped_light", "/groups/2");
    const QString lamp = m_simulator->v2Id("light", "/lights/4");
    const QString path = "/clip/v2/resource/grouped_light/" + kitchen;

    // Some done, some not: the lamp that cannot be reached stays as it was.
    m_simulator->setV2PartialSuccess(true);
    Reply reply = sendV2("PUT", path, R"({"dimming":{"brightness":10}})");
    QCOMPARE(reply.status, 207);
    QCOMPARE(reply.json["errors"][0]["description"], "device (Kitchen candle 2) is not reachable");
    QCOMPARE(at(m_simulator->light("4"), "state.bri"), 25);
    QCOMPARE(at(m_simulator->light("5"), "state.bri"), 254);
    m_simulator->setV2PartialSuccess(false);

    // Busy, for a while, for writes only.
    for (const int status : {429, 503}) {
        m_simulator->setV2Busy(status, 60'000);
        QCOMPARE(sendV2("PUT", path, R"({"on":{"on":false}})").status, status);
        QCOMPARE(sendV2("GET", "/clip/v2/resource/light").status, 200);
        QCOMPARE(at(m_simulator->light("4"), "state.on"), true);
    }
    m_simulator->setV2Busy(429, 0);
    m_simulator->setV2Busy(503, 60'000, true); // the next write is taken, the one after is not
    QCOMPARE(sendV2("PUT", path, R"({"on":{"on":true}})").status, 200);
    QCOMPARE(sendV2("PUT", path, R"({"on":{"on":false}})").status, 503);
    m_simulator->setV2Busy(503, 0);

    // An error for one resource's writes; the others are taken.
    m_simulator->setV2WriteError(400, "device (Kitchen candle 1) is busy", 1, lamp);
    reply = sendV2("PUT", "/clip/v2/resource/light/" + lamp, R"({"on":{"on":false}})");
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.json["errors"][0]["description"], "device (Kitchen candle 1) is busy");
    QCOMPARE(sendV2("PUT", path, R"({"on":{"on":true}})").status, 200);
    QCOMPARE(sendV2("PUT", "/clip/v2/resource/light/" + lamp, R"({"on":{"on":false}})").status, 200);

    // The bridge's pace: a grouped light a second, a light ten.
    m_simulator->setV2PaceEnforced(true);
    QCOMPARE(sendV2("PUT", path, R"({"on":{"on":true}})").status, 200);
    QCOMPARE(sendV2("PUT", path, R"({"on":{"on":false}})").status, 429);
    QCOMPARE(at(m_simulator->light("4"), "state.on"), true);
    m_simulator->setV2PaceEnforced(false);

    // Old firmware and plain HTTP have no version 2; version 1 answers all along.
    m_simulator->setV2Enabled(false);
    QCOMPARE(sendV2("GET", "/clip/v2/resource").status, 404);
    QCOMPARE(sendV2("PUT", path, R"({"on":{"on":false}})").status, 404);
    m_simulator->setV2Enabled(true);
    QCOMPARE(send("GET", "/clip/v2/resource").status, 404);
    QCOMPARE(send("GET", api("/lights")).status, 200);

    // The request log tells which interface a client used.
    QStringList v1Reads;
    for (const SimulatedRequest& request : m_simulator->requests()) {
        if (request.method == "GET" && request.path.startsWith("/api/"))
            v1Reads.append(request.path);
    }
    QCOMPARE(v1Reads, QStringList{api("/lights")});
    QCOMPARE(m_simulator->requests().first().path, path);
}
