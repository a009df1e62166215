#include "BridgeBench.h"
#include "app/DesktopNotifications.h"
#include "app/FreedesktopNotifications.h"
#include "bridge/BridgeCommands.h"
#include "connection/BridgeConnection.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/Preferences.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QLocale>
#include <QTest>

#include <memory>

namespace {

/// One call of Notify as the service received it.
struct Notified
{
    uint replaces = 0;
    QString summary;
    QString body;
    uint id = 0; ///< what the service answered
};

/// The desktop's notification service as a desktop offers it, on its own connection to the private bus: it
/// records each Notify and answers with the id replaced, or a new one.
class StandInNotifications final : public QDBusVirtualObject
{
public:
    QList<Notified> calls;

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (message.member() != u"Notify")
            return false;
        const QList<QVariant> arguments = message.arguments();
        Notified call{arguments.value(1).toUInt(), arguments.value(3).toString(),
                      arguments.value(4).toString()};
        call.id = call.replaces != 0 ? call.replaces : ++m_lastId;
        calls << call;
        connection.send(message.createReply(QVariant::fromValue(call.id)));
        return true;
    }

private:
    uint m_lastId = 40;
};

} // namespace

class TestDesktopNotifications final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void tellsWhatHappenedWhenItShould_data();
    void tellsWhatHappenedWhenItShould();
    void eachKindReplacesItsEarlierNotification();
    void withoutAServiceNothingIsShown();

private:
    /// What the stand-in received, one "summary | body" each.
    QStringList received() const
    {
        QStringList texts;
        for (const Notified& call : std::as_const(m_service->calls))
            texts << call.summary + u" | "_qs + call.body;
        return texts;
    }
    void loseAndFind(int times);

    std::unique_ptr<QDBusConnection> m_desktop;
    std::unique_ptr<StandInNotifications> m_service;
    std::unique_ptr<BridgeBench> m_bench;
    std::unique_ptr<BridgeSessions> m_sessions;
    BridgeSession* m_session = nullptr;
    std::unique_ptr<FreedesktopNotifications> m_sink;
    std::unique_ptr<DesktopNotifications> m_notifications;
    bool m_windowShown = false;
};

void TestDesktopNotifications::initTestCase()
{
    if (qgetenv("GLOWDECK_PRIVATE_SESSION_BUS") != "1")
        QSKIP("needs a private bus; ctest runs this test under dbus-run-session");
    QVERIFY(QDBusConnection::sessionBus().isConnected());
}

void TestDesktopNotifications::init()
{
    m_desktop = std::make_unique<QDBusConnection>(
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"stand-in notifications"_qs));
    m_service = std::make_unique<StandInNotifications>();
    QVERIFY(m_desktop->registerVirtualObject(FreedesktopNotifications::path, m_service.get()));
    QVERIFY(m_desktop->registerService(FreedesktopNotifications::service));

    m_bench = std::make_unique<BridgeBench>();
    QVERIFY(m_bench->start());
    m_bench->settings().setBridgeName(u"Hallway"_qs);
    m_sessions = std::make_unique<BridgeSessions>();
    m_session = &m_sessions->add(std::make_unique<BridgeSession>(m_bench->settings(), m_bench->network()));
    m_sink = std::make_unique<FreedesktopNotifications>();
    m_windowShown = false;
    m_notifications = std::make_unique<DesktopNotifications>(*m_sink, m_bench->settings().preferences(),
                                                             *m_sessions, [this] { return m_windowShown; });
}

void TestDesktopNotifications::cleanup()
{
    m_notifications.reset();
    m_sink.reset();
    m_sessions.reset();
    m_bench.reset();
    m_desktop->unregisterService(FreedesktopNotifications::service);
    m_desktop->unregisterObject(FreedesktopNotifications::path);
    QDBusConnection::disconnectFromBus(u"stand-in notifications"_qs);
    m_desktop.reset();
    m_service.reset();
}

void TestDesktopNotifications::loseAndFind(int times)
{
    BridgeHome& home = m_bench->settings().home();
    for (int i = 0; i < times; ++i) {
        home.setBridgeConnected(true);
        home.setBridgeConnected(false);
    }
    home.setBridgeConnected(true);
}

void TestDesktopNotifications::tellsWhatHappenedWhenItShould_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<bool>("optionOn");
    QTest::addColumn<bool>("windowShown");
    QTest::addColumn<QStringList>("told"); // "%1": the time the lights go off

    const QStringList timerSet{u"Lights off at %1 | All lights switch off in 30 minute(s)."_qs};
    const QStringList wentOff{u"Lights off | The switch-off timer went off."_qs};
    const QStringList refused{u"The bridge refused a change | Internal error, 404"_qs};
    const QStringList lostAndFound{
        u"Lost the bridge Hallway | It does not answer. Glowdeck keeps trying, and looks for it on your "
        "network in case it moved."_qs,
        u"Found the bridge Hallway again | It answers, and Glowdeck shows its lights as they are now."_qs};

    // The timer the user set answers the user: told whether the option is on or not.
    QTest::newRow("timer set, option off") << "timer set" << false << false << timerSet;
    QTest::newRow("timer set, option on") << "timer set" << true << false << timerSet;
    QTest::newRow("timer went off, option off") << "timer went off" << false << false << QStringList();
    QTest::newRow("timer went off, option on") << "timer went off" << true << false << wentOff;
    QTest::newRow("refused, option off") << "refused" << false << false << QStringList();
    QTest::newRow("refused, window closed") << "refused" << true << false << refused;
    // The window's banner says it already.
    QTest::newRow("refused, window open") << "refused" << true << true << QStringList();
    QTest::newRow("lost and found, option off") << "lost and found" << false << false << QStringList();
    QTest::newRow("lost and found, option on") << "lost and found" << true << false << lostAndFound;
    // Disconnect is the user's own doing.
    QTest::newRow("disconnected by the user") << "disconnected" << true << false << QStringList();
}

void TestDesktopNotifications::tellsWhatHappenedWhenItShould()
{
    QFETCH(QString, event);
    QFETCH(bool, optionOn);
    QFETCH(bool, windowShown);
    QFETCH(QStringList, told);
    m_bench->settings().preferences().setNotifiesEvents(optionOn);
    m_windowShown = windowShown;

    const QDateTime at = QDateTime::currentDateTime().addSecs(30 * 60);
    if (event == u"timer set") {
        m_notifications->switchOffSet(at, 30);
    } else if (event == u"timer went off") {
        m_notifications->switchOffWentOff();
    } else if (event == u"refused") {
        m_bench->bridge().setFault(BridgeSimulator::Fault::ErrorArray, 1, "PUT");
        HueLight lamp;
        lamp.lamp_id = u"1"_qs;
        m_session->commands().setLightOn(lamp, true);
        QTRY_VERIFY_WITH_TIMEOUT(!m_bench->changes().isEmpty(), 10000);
    } else if (event == u"lost and found") {
        loseAndFind(1);
    } else if (event == u"disconnected") {
        m_bench->settings().home().setBridgeConnected(true);
        m_session->connection().disconnectFromBridge();
        m_bench->settings().home().setBridgeConnected(true);
    }

    const QString time = QLocale().toString(at.time(), QLocale::ShortFormat);
    for (QString& text : told)
        text.replace(u"%1"_qs, time);
    if (told.isEmpty()) {
        // A notification would have been sent by now: the refusal's answer came, or the call was direct.
        QTest::qWait(200);
        QCOMPARE(received(), QStringList());
    } else {
        QTRY_COMPARE(received(), told);
    }
}

void TestDesktopNotifications::eachKindReplacesItsEarlierNotification()
{
    m_bench->settings().preferences().setNotifiesEvents(true);

    // Shown at once, one after the other: the second waits for the first one's id.
    m_notifications->switchOffSet(QDateTime::currentDateTime().addSecs(5 * 60), 5);
    m_notifications->switchOffSet(QDateTime::currentDateTime().addSecs(60 * 60), 60);
    QTRY_COMPARE(m_service->calls.size(), 2);
    const uint timer = m_service->calls.at(0).id;
    QCOMPARE(m_service->calls.at(0).replaces, 0U);
    QCOMPARE(m_service->calls.at(1).replaces, timer);

    // A bridge that comes and goes faster than the service answers: what it is now replaces what was
    // shown, and nothing piles up in between.
    loseAndFind(3);
    QTRY_COMPARE(m_service->calls.size(), 4);
    const uint bridge = m_service->calls.at(2).id;
    QVERIFY(bridge != timer);
    QVERIFY(m_service->calls.at(2).summary.startsWith(u"Lost"));
    QCOMPARE(m_service->calls.at(3).replaces, bridge);
    QVERIFY(m_service->calls.at(3).summary.startsWith(u"Found"));

    // A loss told once, however often the bridge fails meanwhile.
    m_bench->settings().home().setBridgeConnected(false);
    m_bench->settings().home().setBridgeReach(BridgeHome::Reach::refused);
    m_bench->settings().home().setBridgeReach(BridgeHome::Reach::notAnswering);
    m_bench->settings().home().setConnectionErrorMessage(u"gone"_qs);
    QTRY_COMPARE(m_service->calls.size(), 5);
    QCOMPARE(m_service->calls.at(4).replaces, bridge);
    QTest::qWait(200);
    QCOMPARE(m_service->calls.size(), 5);
}

void TestDesktopNotifications::withoutAServiceNothingIsShown()
{
    m_bench->settings().preferences().setNotifiesEvents(true);
    QVERIFY(m_desktop->unregisterService(FreedesktopNotifications::service));

    // Nobody owns the name: the calls fail quietly, and a later one is a new notification.
    m_notifications->switchOffSet(QDateTime::currentDateTime().addSecs(5 * 60), 5);
    loseAndFind(1);
    QTest::qWait(200);
    QVERIFY(QDBusConnection::sessionBus().isConnected());

    // No bus at all.
    FreedesktopNotifications nowhere(QDBusConnection(u"never connected"_qs));
    nowhere.show(u"timer"_qs, u"Lights off"_qs, QString());

    QVERIFY(m_desktop->registerService(FreedesktopNotifications::service));
    m_notifications->switchOffSet(QDateTime::currentDateTime().addSecs(5 * 60), 5);
    QTRY_COMPARE(m_service->calls.size(), 1);
    QCOMPARE(m_service->calls.first().replaces, 0U);
    QCOMPARE(m_service->calls.size(), 1);
}

QTEST_GUILESS_MAIN(TestDesktopNotifications)
#include "tst_desktopnotifications.moc"
