#include "BridgeBench.h"
#include "bridge/ActionQueue.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

Q_DECLARE_METATYPE(WriteOutcome)

class TestActionQueue final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void mergesRepeatedChanges_data();
    void mergesRepeatedChanges();
    void sendsOneRequestPerTick();
    void sendsSchedulesWithPost();
    void stopsItsTimerWhenDrainedAndStartsAgain();
    void keepsDrainingWhenTheBridgeIsGone();
    void stampsTheLastUserAction();
    void roomsGoOncePerSecondAndLampsPassThem();
    void aBusyBridgePausesTheQueueLongerEachTime();
    void noLateAnswerUndoesANewerCommand_data();
    void noLateAnswerUndoesANewerCommand();
    void readsEveryAnswerAndTellsTheUserWhatWentWrong_data();
    void readsEveryAnswerAndTellsTheUserWhatWentWrong();

private:
    ActionQueueItem item(const QString& id, const QString& property, bool light, int value = 0) const;

    std::unique_ptr<BridgeBench> m_bench;
    std::unique_ptr<ActionQueue> m_queue;
};

void TestActionQueue::init()
{
    m_bench = std::make_unique<BridgeBench>();
    QVERIFY(m_bench->start());
    m_queue = std::make_unique<ActionQueue>(m_bench->settings(), m_bench->network());
}

void TestActionQueue::cleanup()
{
    m_queue.reset();
    m_bench.reset();
}

ActionQueueItem TestActionQueue::item(const QString& id, const QString& property, bool light, int value) const
{
    ActionQueueItem change;
    const QString target = light ? QStringLiteral("lights/%1/state") : QStringLiteral("groups/%1/action");
    change.url =
        QUrl(QStringLiteral("http://%1/api/%2/").arg(m_bench->bridge().hostAndPort(), m_bench->key()) +
             target.arg(id));
    const bool step = property == ActionQueue::brightnessIncrease;
    change.body = QString::fromLatin1(step ? R"({"bri_inc":%1})" : R"({"bri":%1})").arg(value).toUtf8();
    change.issued_at = QDateTime::currentDateTime();
    change.target = light ? ActionQueueItem::Target::light : ActionQueueItem::Target::group;
    change.item_id = id;
    change.property = property;
    return change;
}

void TestActionQueue::mergesRepeatedChanges_data()
{
    // Changes to item "3" as "light|group property value"; what is left queued as "light|group property
    // body".
    QTest::addColumn<QStringList>("enqueued");
    QTest::addColumn<QStringList>("queued");

    QStringList drag;
    for (int bri = 10; bri <= 100; bri += 10)
        drag << u"light brightness %1"_qs.arg(bri);
    QTest::newRow("a dragged slider leaves its newest value") << drag << QStringList{"light brightness 100"};
    // The replacing entry goes to the end, behind the hue change queued after the one it replaces.
    QTest::newRow("other properties keep their order")
        << QStringList{"light brightness 1", "light hue 2", "light brightness 3"}
        << QStringList{"light hue 2", "light brightness 3"};
    // Lamp "3" and room "3" are different things: neither replaces the other.
    QTest::newRow("a room's change does not replace a light's")
        << QStringList{"light on 1", "group on 2"} << QStringList{"light on 1", "group on 2"};
    QTest::newRow("a light's change does not replace a room's")
        << QStringList{"group on 1", "light on 2"} << QStringList{"group on 1", "light on 2"};
    QTest::newRow("light then light") << QStringList{"light on 1", "light on 2"} << QStringList{"light on 2"};
    QTest::newRow("group then group") << QStringList{"group on 1", "group on 2"} << QStringList{"group on 2"};
    // Steps add up (two presses of Brighter are +100), within the bridge's range.
    QTest::newRow("steps add up") << QStringList{"group brightness_increase 50",
                                                 "group brightness_increase 50"}
                                  << QStringList{"group brightness_increase 100"};
    QTest::newRow("steps stop at 254")
        << QStringList{"group brightness_increase 200", "group brightness_increase 100"}
        << QStringList{"group brightness_increase 254"};
    QTest::newRow("and at -254") << QStringList{"group brightness_increase -200",
                                                "group brightness_increase -100",
                                                "group brightness_increase -100"}
                                 << QStringList{"group brightness_increase -254"};
}

void TestActionQueue::mergesRepeatedChanges()
{
    QFETCH(QStringList, enqueued);
    QFETCH(QStringList, queued);
    for (const QString& change : enqueued) {
        const QStringList parts = change.split(u' ');
        m_queue->enqueue(
            item(QStringLiteral("3"), parts.at(1), parts.at(0) == u"light", parts.at(2).toInt()));
    }
    const auto left = [this] {
        QStringList items;
        for (const ActionQueueItem& entry : m_queue->pending())
            items << (entry.target == ActionQueueItem::Target::light ? u"light "_qs : u"group "_qs) +
                         entry.property + u' ' + QString::fromUtf8(entry.body).section(u':', 1).chopped(1);
        return items;
    };
    // Held (as in sleep) so that the first change does not leave at once: the merged queue is seen whole.
    m_queue->stopProcessor();
    QTRY_COMPARE(left(), queued);

    // What is left is what reaches the bridge, in that order.
    QSignalSpy drained(m_queue.get(), &ActionQueue::drained);
    m_queue->startProcessor();
    QVERIFY(drained.wait(5000));
    QStringList sent;
    for (const SimulatedRequest& request : m_bench->changes())
        sent << request.path.section(u'/', 3, 4) + u' ' + QString::number(request.body.begin()->toInt());
    QStringList expected;
    for (const QString& entry : queued)
        expected << (entry.startsWith(u"light") ? u"lights/3 "_qs : u"groups/3 "_qs) + entry.section(u' ', 2);
    QCOMPARE(sent, expected);
}

void TestActionQueue::sendsOneRequestPerTick()
{
    for (int id = 1; id <= 4; ++id)
        m_queue->enqueue(item(QString::number(id), QStringLiteral("on"), true));
    QSignalSpy sent(m_queue.get(), &ActionQueue::sent);
    // An idle queue sends its first change at once, not at its first tick.
    for (int turn = 0; turn < 3 && sent.isEmpty(); ++turn)
        QCoreApplication::processEvents();
    QCOMPARE(sent.size(), 1);
    QCOMPARE(m_queue->pending().size(), 3); // the others wait for their ticks
    QTRY_COMPARE(sent.size(), 4);
    QStringList order;
    for (const QList<QVariant>& signal : sent)
        order.append(signal.at(0).value<ActionQueueItem>().item_id);
    QCOMPARE(order, (QStringList{"1", "2", "3", "4"}));
}

void TestActionQueue::sendsSchedulesWithPost()
{
    ActionQueueItem schedule = item(QString(), QStringLiteral("schedule"), false);
    schedule.url = QUrl(
        QStringLiteral("http://%1/api/%2/schedules").arg(m_bench->bridge().hostAndPort(), m_bench->key()));
    schedule.body = R"({"command":{"address":"/api/x/groups/0/action","method":"PUT","body":{"on":false}},)"
                    R"("autodelete":true,"localtime":"PT00:05:00","recycle":true})";
    m_queue->enqueue(schedule);
    m_queue->enqueue(item(QStringLiteral("1"), QStringLiteral("on"), false));
    QTRY_COMPARE(m_bench->changes().size(), 2);
    QCOMPARE(m_bench->changes().at(0).method, QByteArray("POST"));
    QCOMPARE(m_bench->changes().at(1).method, QByteArray("PUT"));
}

void TestActionQueue::stopsItsTimerWhenDrainedAndStartsAgain()
{
    QVERIFY(!m_queue->isProcessing());
    m_queue->enqueue(item(QStringLiteral("1"), QStringLiteral("on"), true));
    QVERIFY(m_queue->isProcessing());
    QTRY_VERIFY(!m_queue->isProcessing());
    QCOMPARE(m_queue->pending().size(), 0);

    m_queue->enqueue(item(QStringLiteral("1"), QStringLiteral("on"), true));
    QVERIFY(m_queue->isProcessing());

    // Sleep stops the timer and keeps the work; wake starts it again.
    m_queue->stopProcessor();
    QTest::qWait(2 * int(ActionQueue::tickInterval.count()));
    QCOMPARE(m_queue->pending().size(), 1);
    m_queue->startProcessor();
    QTRY_COMPARE(m_queue->pending().size(), 0);
}

void TestActionQueue::keepsDrainingWhenTheBridgeIsGone()
{
    const QString address = m_bench->bridge().hostAndPort();
    m_bench->bridge().close();
    for (int id = 1; id <= 3; ++id) {
        ActionQueueItem change;
        change.url = QUrl(QStringLiteral("http://%1/api/k/lights/%2/state").arg(address).arg(id));
        change.item_id = QString::number(id);
        change.property = QStringLiteral("on");
        m_queue->enqueue(change);
    }
    QSignalSpy drained(m_queue.get(), &ActionQueue::drained);
    QVERIFY(drained.wait(5000));
    QCOMPARE(m_queue->pending().size(), 0);
}

void TestActionQueue::roomsGoOncePerSecondAndLampsPassThem()
{
    // A room slider dragged for two and a half seconds, and a lamp switched meanwhile.
    for (int value = 1; value <= 50; ++value) {
        m_queue->enqueue(item(QStringLiteral("1"), QStringLiteral("brightness"), false, value));
        if (value == 25)
            m_queue->enqueue(item(QStringLiteral("2"), QStringLiteral("on"), true, 1));
        QTest::qWait(50);
    }
    QSignalSpy drained(m_queue.get(), &ActionQueue::drained);
    QVERIFY(drained.wait(10000));

    QList<SimulatedRequest> rooms = m_bench->changes();
    rooms.removeIf([](const SimulatedRequest& r) { return !r.path.contains(u"/groups/"); });
    QVERIFY2(rooms.size() >= 2 && rooms.size() <= 4, qPrintable(QString::number(rooms.size())));
    for (qsizetype i = 1; i < rooms.size(); ++i)
        QVERIFY2(rooms.at(i).receivedAtMs - rooms.at(i - 1).receivedAtMs >= 900,
                 qPrintable(QString::number(rooms.at(i).receivedAtMs - rooms.at(i - 1).receivedAtMs)));
    QCOMPARE(rooms.last().body.value(u"bri").toInt(), 50); // the slider ends where the user left it
    // The lamp did not wait for the room's next second.
    const auto lamp = std::find_if(m_bench->changes().cbegin(), m_bench->changes().cend(),
                                   [](const SimulatedRequest& r) { return r.path.contains(u"/lights/"); });
    QVERIFY(lamp != m_bench->changes().cend());
    QVERIFY(lamp->receivedAtMs < rooms.last().receivedAtMs);
}

void TestActionQueue::aBusyBridgePausesTheQueueLongerEachTime()
{
    // A bridge that takes one room change every 2.5 s: the second is turned away, and again after 1 s.
    m_bench->bridge().setRoomChangeSpacing(2500);
    m_queue->enqueue(item(QStringLiteral("1"), QStringLiteral("on"), false, 1));
    m_queue->enqueue(item(QStringLiteral("2"), QStringLiteral("on"), false, 1));
    QSignalSpy drained(m_queue.get(), &ActionQueue::drained);
    QVERIFY(drained.wait(15000));

    QList<SimulatedRequest> second = m_bench->changes();
    second.removeIf([](const SimulatedRequest& r) { return !r.path.endsWith(u"/groups/2/action"); });
    // Turned away at about 1 s and 2 s (paused 1 s), taken at about 4 s (paused 2 s): never pressed on.
    QCOMPARE(second.size(), 3);
    QVERIFY(second.at(2).receivedAtMs - second.at(1).receivedAtMs >= 1900);
    QCOMPARE(m_bench->bridge().group(u"2"_qs).value(u"action").toObject().value(u"bri").toInt(), 1);
    QCOMPARE(m_bench->settings().activity().log().filter(u"The bridge is busy (HTTP 429)"_qs).size(), 1);
}

void TestActionQueue::noLateAnswerUndoesANewerCommand_data()
{
    // Room 1 (on, brightness 200) gets `first`, answered `fault` after `late` ms, and room `secondRoom` gets
    // `second` (if any) as soon as the first has gone out. The bodies reach the bridge as `sent` and leave
    // room 1's action `ends`.
    QTest::addColumn<BridgeSimulator::Fault>("fault");
    QTest::addColumn<int>("late");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QString>("secondRoom");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QList<QByteArray>>("sent");
    QTest::addColumn<QJsonObject>("ends");
    QTest::addColumn<QString>("firstRoom");
    using Fault = BridgeSimulator::Fault;
    const QByteArray on = R"({"on":true})";
    const QByteArray off = R"({"on":false})";
    QTest::newRow("a slow 429 after a newer command was taken")
        << Fault::TooManyRequests << 2500 << "on" << on << "1" << off << QList<QByteArray>{on, off}
        << QJsonObject{{"on", false}} << QStringLiteral("1");
    // Group 0 holds every lamp.
    QTest::newRow("a slow 429 after everything was switched off")
        << Fault::TooManyRequests << 2500 << "on" << on << "0" << off << QList<QByteArray>{on, off}
        << QJsonObject{{"on", false}} << QStringLiteral("1");
    QTest::newRow("a 429 with nothing newer goes again")
        << Fault::TooManyRequests << 0 << "on" << off << "" << QByteArray() << QList<QByteArray>{off, off}
        << QJsonObject{{"on", false}} << QStringLiteral("1");
    QTest::newRow("a 503 with nothing newer goes again")
        << Fault::ServiceUnavailable << 0 << "on" << off << "" << QByteArray() << QList<QByteArray>{off, off}
        << QJsonObject{{"on", false}} << QStringLiteral("1");
    // Two presses of Darker are two steps, however the bridge answers.
    const QString step = ActionQueue::brightnessIncrease;
    QTest::newRow("a refused step is added into a newer one waiting")
        << Fault::TooManyRequests << 300 << step << QByteArray(R"({"bri_inc":-50,"on":true})") << "1"
        << QByteArray(R"({"bri_inc":-30,"on":true})")
        << QList<QByteArray>{R"({"bri_inc":-50,"on":true})", R"({"bri_inc":-80,"on":true})"}
        << QJsonObject{{"bri", 120}, {"on", true}} << QStringLiteral("1");
    // Down to nothing (off), then up again (on): the refused step goes again, but does not switch off.
    QTest::newRow("a step refused after a newer one was taken")
        << Fault::TooManyRequests << 2500 << step << QByteArray(R"({"bri_inc":-196,"on":false})") << "1"
        << QByteArray(R"({"bri_inc":100,"on":true})")
        << QList<QByteArray>{R"({"bri_inc":-196,"on":false})", R"({"bri_inc":100,"on":true})",
                             R"({"bri_inc":-196,"on":true})"}
        << QJsonObject{{"bri", 58}, {"on", true}} << QStringLiteral("1");
    // Everything off, turned away late after room 1 was switched on: everything off again, then room 1 on.
    QTest::newRow("a slow 429 of everything after a room was switched on")
        << Fault::TooManyRequests << 2500 << "on" << off << "1" << on << QList<QByteArray>{off, on, off, on}
        << QJsonObject{{"on", true}} << QStringLiteral("0");
}

void TestActionQueue::noLateAnswerUndoesANewerCommand()
{
    QFETCH(BridgeSimulator::Fault, fault);
    QFETCH(int, late);
    QFETCH(QString, property);
    QFETCH(QByteArray, first);
    QFETCH(QString, secondRoom);
    QFETCH(QByteArray, second);
    QFETCH(QList<QByteArray>, sent);
    QFETCH(QJsonObject, ends);
    QFETCH(QString, firstRoom);
    m_bench->bridge().setFault(fault, 1, "PUT");
    m_bench->bridge().setFaultLatency(late);
    const auto change = [this, &property](const QString& id, const QByteArray& body) {
        ActionQueueItem room = item(id, property, false);
        room.body = body;
        return room;
    };
    QSignalSpy drained(m_queue.get(), &ActionQueue::drained);
    QSignalSpy gone(m_queue.get(), &ActionQueue::sent);
    m_queue->enqueue(change(firstRoom, first));
    if (!second.isEmpty()) {
        QVERIFY(gone.wait(5000));
        m_queue->enqueue(change(secondRoom, second));
    }
    QVERIFY(drained.wait(15000));
    QTRY_COMPARE(m_queue->requestsInFlight(), 0);

    QList<QByteArray> received;
    for (const SimulatedRequest& request : m_bench->changes())
        received << request.rawBody;
    QCOMPARE(received, sent);
    const QJsonObject action = m_bench->bridge().group(QStringLiteral("1")).value(u"action").toObject();
    for (auto it = ends.constBegin(); it != ends.constEnd(); ++it)
        QCOMPARE(action.value(it.key()), it.value());
}

void TestActionQueue::stampsTheLastUserAction()
{
    const QDateTime then(QDate(2026, 5, 1), QTime(12, 15, 10));
    m_queue->setClock([then] { return then; });
    m_queue->enqueue(item(QStringLiteral("1"), QStringLiteral("on"), true));
    QTRY_COMPARE(m_queue->lastUserActionAt(), then);
}

QTEST_GUILESS_MAIN(TestActionQueue)
#include "tst_actionqueue.moc"

void TestActionQueue::readsEveryAnswerAndTellsTheUserWhatWentWrong_data()
{
    QTest::addColumn<BridgeSimulator::Fault>("fault");
    QTest::addColumn<WriteOutcome::Kind>("outcome");
    QTest::addColumn<QString>("notice"); // in the window; lost connections are the banner's own business
    using Fault = BridgeSimulator::Fault;
    using Kind = WriteOutcome::Kind;
    QTest::newRow("accepted") << Fault::None << Kind::accepted << QString();
    QTest::newRow("refused") << Fault::ErrorArray << Kind::refused
                             << u"The bridge refused the change: Internal error, 404"_qs;
    QTest::newRow("HTTP error") << Fault::HttpError << Kind::httpError
                                << u"The bridge answered with an error (HTTP 500)"_qs;
    QTest::newRow("garbage") << Fault::GarbageBody << Kind::unexpected
                             << u"The bridge's answer could not be read"_qs;
    QTest::newRow("dropped") << Fault::DropConnection << Kind::noAnswer << QString();
    QTest::newRow("drip-feed") << Fault::DripFeed << Kind::timedOut << QString();
}

void TestActionQueue::readsEveryAnswerAndTellsTheUserWhatWentWrong()
{
    QFETCH(BridgeSimulator::Fault, fault);
    QFETCH(WriteOutcome::Kind, outcome);
    QFETCH(QString, notice);
    m_bench->bridge().setDripFeed(1, 1000);
    m_bench->bridge().setFault(fault);
    QSignalSpy answered(m_queue.get(), &ActionQueue::answered);
    m_queue->enqueue(item(QStringLiteral("1"), QStringLiteral("brightness"), true));
    m_queue->enqueue(item(QStringLiteral("2"), QStringLiteral("brightness"), true));
    QTRY_COMPARE_WITH_TIMEOUT(answered.size(), 2, int(ActionQueue::sendDeadline.count()) + 3000);
    for (const QList<QVariant>& answer : answered) {
        const auto result = answer.at(1).value<WriteOutcome>();
        QCOMPARE(result.kind, outcome);
        if (outcome == WriteOutcome::Kind::refused)
            QCOMPARE(result.detail, QStringLiteral("Internal error, 404"));
    }
    QCOMPARE(m_bench->settings().activity().notice(), notice);
    // Every one in the log, naming the lamp (and not the key).
    const QStringList logged = m_bench->settings().activity().log().filter(QStringLiteral("change of"));
    QCOMPARE(logged.size(), notice.isEmpty() ? 0 : 2);
    if (outcome == WriteOutcome::Kind::refused)
        QCOMPARE(logged.first(), u"The bridge refused a change of /lights/1/state: Internal error, 404"_qs);
    QTRY_COMPARE(m_queue->requestsInFlight(), 0);
}
