#include "TestSupport.h"
#include "connection/avahi/AvahiBrowser.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QTest>

#include <memory>

namespace {

using Found = LocalNetworkBrowser::Found;

const QString avahi = QStringLiteral("org.freedesktop.Avahi");
const QString browserPath = QStringLiteral("/Client1/ServiceBrowser1");

struct Announced
{
    QString name;
    QString address; // empty: resolving it fails
    quint16 port = 443;
    QList<QByteArray> txt;
};

/// Avahi's D-Bus interface as avahi-daemon offers it, on its own connection to the private bus: a service
/// browser that announces the given services and then "all for now", and a resolver for each.
class StandInAvahi final : public QDBusVirtualObject
{
public:
    QList<Announced> services;
    QStringList calls; // "Prepare _hue._tcp", "Start", "Resolve <name>", "Free"

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        const QString member = message.member();
        const QList<QVariant> arguments = message.arguments();
        if (member == u"ServiceBrowserPrepare") {
            calls << u"Prepare "_qs + arguments.value(2).toString();
            connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(browserPath))));
        } else if (member == u"Start" && message.path() == browserPath) {
            calls << member;
            connection.send(message.createReply());
            for (const Announced& service : std::as_const(services))
                announce(connection, "ItemNew", {2, 0, service.name, u"_hue._tcp"_qs, u"local"_qs, 0U});
            announce(connection, "AllForNow", {});
        } else if (member == u"ResolveService") {
            const QString name = arguments.value(2).toString();
            calls << u"Resolve "_qs + name;
            const auto service = std::find_if(services.cbegin(), services.cend(),
                                              [&name](const Announced& s) { return s.name == name; });
            if (service == services.cend() || service->address.isEmpty()) {
                connection.send(message.createErrorReply(u"org.freedesktop.Avahi.TimeoutError"_qs,
                                                         u"Timeout reached"_qs));
                return true;
            }
            QDBusArgument txt;
            txt.beginArray(QMetaType::fromType<QByteArray>());
            for (const QByteArray& entry : service->txt)
                txt << entry;
            txt.endArray();
            connection.send(message.createReply(
                {2, 0, name, u"_hue._tcp"_qs, u"local"_qs, u"Philips-hue.local"_qs, 0, service->address,
                 QVariant::fromValue(service->port), QVariant::fromValue(txt), 0U}));
        } else if (member == u"Free") {
            calls << member;
            connection.send(message.createReply());
        } else {
            return false;
        }
        return true;
    }

private:
    static void announce(const QDBusConnection& connection, const char* signal, const QList<QVariant>& values)
    {
        QDBusMessage message = QDBusMessage::createSignal(
            browserPath, u"org.freedesktop.Avahi.ServiceBrowser"_qs, QString::fromLatin1(signal));
        message.setArguments(values);
        connection.send(message);
    }
};

QString shown(const QList<Found>& found)
{
    QStringList bridges;
    for (const Found& bridge : found)
        bridges << u"%1:%2 %3"_qs.arg(bridge.address).arg(bridge.port).arg(bridge.bridgeId).trimmed();
    return bridges.isEmpty() ? u"<nothing>"_qs : bridges.join(u", ");
}

} // namespace

Q_DECLARE_METATYPE(Announced)

class TestAvahiBrowser final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void answersWithEveryBridgeResolved_data();
    void answersWithEveryBridgeResolved();

private:
    std::unique_ptr<QDBusConnection> m_desktop;
    std::unique_ptr<StandInAvahi> m_avahi;
};

void TestAvahiBrowser::initTestCase()
{
    // The private bus of dbus-run-session stands in for the system bus: never the machine's own Avahi.
    if (qgetenv("GLOWDECK_PRIVATE_SESSION_BUS") != "1")
        QSKIP("needs a private bus; ctest runs this test under dbus-run-session");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
    QVERIFY(QDBusConnection::systemBus().isConnected());
}

void TestAvahiBrowser::init()
{
    m_desktop = std::make_unique<QDBusConnection>(
        QDBusConnection::connectToBus(QDBusConnection::SystemBus, u"stand-in avahi"_qs));
    m_avahi = std::make_unique<StandInAvahi>();
    QVERIFY(m_desktop->registerVirtualObject(u"/"_qs, m_avahi.get(), QDBusConnection::SubPath));
}

void TestAvahiBrowser::cleanup()
{
    m_desktop->unregisterService(avahi);
    m_desktop->unregisterObject(u"/"_qs, QDBusConnection::UnregisterTree);
    QDBusConnection::disconnectFromBus(u"stand-in avahi"_qs);
    m_desktop.reset();
    m_avahi.reset();
}

void TestAvahiBrowser::answersWithEveryBridgeResolved_data()
{
    QTest::addColumn<QList<Announced>>("services");
    QTest::addColumn<QString>(
        "serviceName"); // "avahi": the stand-in; "absent": nobody owns the name; "": off
    QTest::addColumn<QString>("found");
    QTest::addColumn<int>("linesPrinted");

    const Announced hall{
        u"Hue Bridge - 6A3B2C"_qs, u"192.168.1.30"_qs, 443, {"bridgeid=001788fffe6a3b2c", "modelid=BSB002"}};
    const Announced attic{u"Hue Bridge - 0A0B0C"_qs, u"192.168.1.31"_qs, 8443, {"bridgeid=c42996fffe0a0b0c"}};
    const Announced broken{u"Hue Bridge - DEAD00"_qs, QString(), 443, {}};

    QTest::newRow("one bridge") << QList<Announced>{hall} << u"avahi"_qs
                                << u"192.168.1.30:443 001788FFFE6A3B2C"_qs << 0;
    QTest::newRow("two bridges, in the order they resolved")
        << QList<Announced>{attic, hall} << u"avahi"_qs
        << u"192.168.1.31:8443 C42996FFFE0A0B0C, 192.168.1.30:443 001788FFFE6A3B2C"_qs << 0;
    QTest::newRow("a resolver failure, then a bridge")
        << QList<Announced>{broken, hall} << u"avahi"_qs << u"192.168.1.30:443 001788FFFE6A3B2C"_qs << 1;
    QTest::newRow("a bridge without a TXT record")
        << QList<Announced>{{u"Hue Bridge"_qs, u"192.168.1.32"_qs, 443, {}}} << u"avahi"_qs
        << u"192.168.1.32:443"_qs << 0;
    // Both end at Avahi's "all for now", well before the limit.
    QTest::newRow("no bridge announced") << QList<Announced>{} << u"avahi"_qs << u"<nothing>"_qs << 0;
    QTest::newRow("every resolve fails") << QList<Announced>{broken} << u"avahi"_qs << u"<nothing>"_qs << 1;
    QTest::newRow("Avahi not on the bus") << QList<Announced>{hall} << u"absent"_qs << u"<nothing>"_qs << 1;
    QTest::newRow("switched off") << QList<Announced>{hall} << QString() << u"<nothing>"_qs << 0;
}

void TestAvahiBrowser::answersWithEveryBridgeResolved()
{
    QFETCH(QList<Announced>, services);
    QFETCH(QString, serviceName);
    QFETCH(QString, found);
    QFETCH(int, linesPrinted);
    m_avahi->services = services;
    if (serviceName == u"avahi")
        QVERIFY(m_desktop->registerService(avahi));
    PrintedLines printed;

    AvahiBrowser browser(QDBusConnection::systemBus(),
                         serviceName == u"avahi" || serviceName == u"absent" ? avahi : QString());
    QList<QList<Found>> answers;
    browser.browse(std::chrono::minutes(1), [&answers](const QList<Found>& f) { answers << f; });
    QVERIFY(answers.isEmpty()); // never before returning
    QTRY_COMPARE(answers.size(), 1);
    QCOMPARE(shown(answers.first()), found);
    QCOMPARE(printed.lines().size(), linesPrinted);
    if (serviceName == u"avahi") {
        QCOMPARE(m_avahi->calls.mid(0, 2), (QStringList{u"Prepare _hue._tcp"_qs, u"Start"_qs}));
        QTRY_COMPARE(m_avahi->calls.last(), u"Free"_qs); // Avahi's browser is let go
    }
    QTest::qWait(50);
    QCOMPARE(answers.size(), 1); // once
}

QTEST_GUILESS_MAIN(TestAvahiBrowser)
#include "tst_avahibrowser.moc"
