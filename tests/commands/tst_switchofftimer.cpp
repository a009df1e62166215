#include "BridgeBench.h"
#include "bridge/ActionQueue.h"
#include "bridge/BridgeCommands.h"
#include "commands/SwitchOffTimer.h"

#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>

#include <memory>

class TestSwitchOffTimer final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void keepsOneSwitchOffTimerAndCancelsIt();
    void aSwitchOffTimerSurvivesABusyOrSilentBridge_data();
    void aSwitchOffTimerSurvivesABusyOrSilentBridge();
    void findsItsSwitchOffTimerAgainAfterARestart();

private:
    /// A timer as another program (or Glowdeck elsewhere, with its own key) sets it; its id.
    QString addForeignTimer(const QString& name, const QString& key, const QString& status = u"enabled"_qs);

    std::unique_ptr<BridgeBench> m_bench;
    std::unique_ptr<ActionQueue> m_queue;
    std::unique_ptr<BridgeCommands> m_commands;
};

void TestSwitchOffTimer::init()
{
    m_bench = std::make_unique<BridgeBench>();
    QVERIFY(m_bench->start());
    m_queue = std::make_unique<ActionQueue>(m_bench->settings(), m_bench->network());
    m_commands = std::make_unique<BridgeCommands>(m_bench->settings(), *m_queue);
}

void TestSwitchOffTimer::cleanup()
{
    m_commands.reset();
    m_queue.reset();
    m_bench.reset();
}

void TestSwitchOffTimer::keepsOneSwitchOffTimerAndCancelsIt()
{
    BridgeSimulator& bridge = m_bench->bridge();
    // Another program's timer, which is never touched.
    const QString foreign = addForeignTimer(u"Bedtime"_qs, m_bench->key());

    SwitchOffTimer timer(m_bench->settings(), m_bench->network(), *m_queue, *m_commands);
    const QDateTime now(QDate(2026, 11, 25), QTime(23, 10));
    timer.setClock([now] { return now; });
    timer.start(5);
    QCOMPARE(timer.firesAt(), now.addSecs(5 * 60));
    QTRY_COMPARE(bridge.scheduleIds().size(), 2);

    // A second choice replaces the first, also one made before the bridge answered the one before.
    timer.start(30);
    timer.start(60);
    QCOMPARE(timer.firesAt(), now.addSecs(60 * 60));
    // The 5 minutes' deleted, the 30 and 60 minutes' made, then the 30 minutes' deleted once its id came.
    QTRY_COMPARE_WITH_TIMEOUT(bridge.requests().size(), 5, 5000);
    QCOMPARE(bridge.requests().last().method, QByteArray("DELETE"));
    QCOMPARE(bridge.scheduleIds().size(), 2);
    QCOMPARE(bridge.scheduleIds().first(), foreign);
    QCOMPARE(bridge.schedule(bridge.scheduleIds().last()).value(u"localtime").toString(), u"PT01:00:00"_qs);

    timer.cancel();
    QVERIFY(!timer.firesAt().isValid());
    QTRY_COMPARE(bridge.scheduleIds(), QStringList{foreign});
}

QString TestSwitchOffTimer::addForeignTimer(const QString& name, const QString& key, const QString& status)
{
    return m_bench->bridge().addSchedule(
        QJsonObject{{"name", name},
                    {"command", QJsonObject{{"address", u"/api/%1/groups/0/action"_qs.arg(key)},
                                            {"method", "PUT"},
                                            {"body", QJsonObject{{"on", false}}}}},
                    {"localtime", "PT00:45:00"},
                    {"status", status}});
}

void TestSwitchOffTimer::aSwitchOffTimerSurvivesABusyOrSilentBridge_data()
{
    // The timer's request meets `fault`, held back `late` ms; the bridge gets `requests`.
    QTest::addColumn<BridgeSimulator::Fault>("fault");
    QTest::addColumn<int>("late");
    QTest::addColumn<QStringList>("requests");
    using Fault = BridgeSimulator::Fault;
    // A busy bridge refuses nothing: the queue sends the timer again after its pause.
    QTest::newRow("429") << Fault::TooManyRequests << 0 << QStringList{"POST", "POST"};
    QTest::newRow("503") << Fault::ServiceUnavailable << 0 << QStringList{"POST", "POST"};
    // The bridge made the timer, but its answer never came: the list of schedules tells.
    QTest::newRow("no answer in time")
        << Fault::DripFeed << int(ActionQueue::sendTimeout.count()) + 500 << QStringList{"POST", "GET"};
}

void TestSwitchOffTimer::aSwitchOffTimerSurvivesABusyOrSilentBridge()
{
    QFETCH(BridgeSimulator::Fault, fault);
    QFETCH(int, late);
    QFETCH(QStringList, requests);
    BridgeSimulator& bridge = m_bench->bridge();
    bridge.setFault(fault, 1, "POST");
    bridge.setFaultLatency(late);
    SwitchOffTimer timer(m_bench->settings(), m_bench->network(), *m_queue, *m_commands);
    QSignalSpy drained(m_queue.get(), &ActionQueue::drained);

    timer.start(5);

    QVERIFY(drained.wait(10000));
    QTRY_COMPARE(bridge.requests().size(), requests.size());
    QTRY_VERIFY(timer.firesAt().isValid());
    QCOMPARE(bridge.scheduleIds().size(), 1);
    QStringList methods;
    for (const SimulatedRequest& request : bridge.requests())
        methods << QString::fromLatin1(request.method);
    QCOMPARE(methods, requests);

    timer.cancel();
    QTRY_VERIFY(bridge.scheduleIds().isEmpty());
}

void TestSwitchOffTimer::findsItsSwitchOffTimerAgainAfterARestart()
{
    BridgeSimulator& bridge = m_bench->bridge();
    const QString otherKey = bridge.addUser();
    const QStringList foreign{
        addForeignTimer(u"Bedtime"_qs, m_bench->key()),
        // Glowdeck on another computer, paired with a key of its own.
        addForeignTimer(BridgeCommands::switchOffScheduleName, otherKey),
        // Ours, but switched off in another app: it goes off no more.
        addForeignTimer(BridgeCommands::switchOffScheduleName, m_bench->key(), u"disabled"_qs)};
    auto before =
        std::make_unique<SwitchOffTimer>(m_bench->settings(), m_bench->network(), *m_queue, *m_commands);
    before->start(30);
    QTRY_COMPARE(bridge.scheduleIds().size(), 4);
    const QString ours = bridge.scheduleIds().last();
    before.reset(); // quit, or a crash

    SwitchOffTimer timer(m_bench->settings(), m_bench->network(), *m_queue, *m_commands);
    QSignalSpy changed(&timer, &SwitchOffTimer::changed);
    // An answer that is no list changes nothing, and says so.
    bridge.setFault(BridgeSimulator::Fault::GarbageBody, 1, "GET");
    timer.findOnBridge();
    QTRY_COMPARE(m_bench->settings().activity().log().filter(u"timers could not be read"_qs).size(), 1);
    QVERIFY(changed.isEmpty());

    timer.findOnBridge();
    QVERIFY(changed.wait(5000));
    const QDateTime started =
        QDateTime::fromString(bridge.schedule(ours).value(u"starttime").toString() + u'Z', Qt::ISODate);
    QCOMPARE(timer.firesAt(), started.addSecs(30 * 60));
    QCOMPARE(timer.firesAt().timeSpec(), Qt::LocalTime);

    timer.cancel();
    QVERIFY(!timer.firesAt().isValid());
    QTRY_COMPARE(bridge.scheduleIds(), foreign);
}

QTEST_GUILESS_MAIN(TestSwitchOffTimer)
#include "tst_switchofftimer.moc"
