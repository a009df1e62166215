#include "HotkeyBench.h"
#include "hotkeys/HotkeyNames.h"
#include "hotkeys/portal/PortalHotkeyBackend.h"
#include "simulator/BridgeSimulator.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using Shortcut = GlobalHotkeys::Shortcut;

namespace {

const Shortcut controlAltK{40, Shortcut::control | Shortcut::option};
const Shortcut superShiftF5{96, Shortcut::command | Shortcut::shift};
const Shortcut controlAltL{37, Shortcut::control | Shortcut::option};

/// The desktop portal's GlobalShortcuts interface as a desktop offers it, on its own connection to the
/// private session bus: it opens sessions, binds what it is given with the preferred triggers, and activates
/// on request.
class StandInShortcutsPortal final : public QDBusVirtualObject
{
public:
    QStringList calls;           ///< "Register <id>", "CreateSession", "BindShortcuts", "Close <session>"
    QList<PortalShortcut> bound; ///< what the last BindShortcuts bound
    QString session;             ///< the newest session's path

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        const QString member = message.member();
        const QList<QVariant> arguments = message.arguments();
        if (message.interface() == u"org.freedesktop.DBus.Properties" && member == u"Get") {
            if (arguments.value(0).toString() != PortalHotkeyBackend::interface)
                return false;
            connection.send(message.createReply(QVariant::fromValue(QDBusVariant(1U))));
        } else if (message.interface() == u"org.freedesktop.host.portal.Registry") {
            calls << QStringLiteral("Register ") + arguments.value(0).toString();
            connection.send(message.createReply());
        } else if (message.interface() == u"org.freedesktop.portal.Session" && member == u"Close") {
            calls << QStringLiteral("Close ") + message.path();
            connection.send(message.createReply());
        } else if (member == u"CreateSession") {
            calls << member;
            const QVariantMap options = qdbus_cast<QVariantMap>(arguments.value(0));
            session = handle(message, QStringLiteral("session"),
                             options.value(QStringLiteral("session_handle_token")).toString());
            respond(message, connection, options.value(QStringLiteral("handle_token")).toString(),
                    {{QStringLiteral("session_handle"), session}});
        } else if (member == u"BindShortcuts") {
            calls << member;
            if (arguments.value(0).value<QDBusObjectPath>().path() != session)
                return false;
            bound.clear();
            arguments.value(1).value<QDBusArgument>() >> bound;
            for (PortalShortcut& shortcut : bound)
                shortcut.properties.insert(QStringLiteral("trigger_description"),
                                           shortcut.properties.value(QStringLiteral("preferred_trigger")));
            respond(
                message, connection,
                qdbus_cast<QVariantMap>(arguments.value(3)).value(QStringLiteral("handle_token")).toString(),
                {{QStringLiteral("shortcuts"), QVariant::fromValue(bound)}});
        } else {
            return false;
        }
        return true;
    }

    /// What the desktop sends when the user presses and releases the shortcut `id`.
    void pressAndRelease(QDBusConnection connection, const QString& id, const QString& inSession)
    {
        for (const char* signal : {"Activated", "Deactivated"}) {
            QDBusMessage message = QDBusMessage::createSignal(
                PortalHotkeyBackend::path, PortalHotkeyBackend::interface, QString::fromLatin1(signal));
            message << QVariant::fromValue(QDBusObjectPath(inSession)) << id << qulonglong(1)
                    << QVariantMap();
            connection.send(message);
        }
    }

private:
    static QString handle(const QDBusMessage& message, const QString& kind, const QString& token)
    {
        const QString sender = message.service().mid(1).replace(u'.', u'_');
        return QStringLiteral("%1/%2/%3/%4").arg(PortalHotkeyBackend::path, kind, sender, token);
    }

    /// Answers with the request's path, then sends its Response, as the portal does once the user decided.
    void respond(const QDBusMessage& message, const QDBusConnection& connection, const QString& token,
                 const QVariantMap& results)
    {
        const QString request = handle(message, QStringLiteral("request"), token);
        connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
        QDBusMessage response = QDBusMessage::createSignal(
            request, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        response << 0U << results;
        connection.send(response);
    }
};

} // namespace

class TestPortalHotkeyBackend final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void bindsEveryShortcutInOneSessionWithItsPreferredTrigger();
    void activatedRunsTheAction();
    void aNewCombinationIsBoundInAFreshSession();
    void withoutThePortalItSaysSoOnce();

private:
    void start();
    QStringList received() const;

    std::unique_ptr<QDBusConnection> m_desktop;
    std::unique_ptr<StandInShortcutsPortal> m_portal;
    std::unique_ptr<BridgeSimulator> m_bridge;
    std::unique_ptr<HotkeyBench> m_bench;
    PortalHotkeyBackend* m_backend = nullptr; // the bench's
};

void TestPortalHotkeyBackend::initTestCase()
{
    // Never the user's own session bus: the stand-in would sit beside (or fail against) the real portal.
    if (qgetenv("GLOWDECK_PRIVATE_SESSION_BUS") != "1")
        QSKIP("needs a private session bus; ctest runs this test under dbus-run-session");
    QVERIFY(QDBusConnection::sessionBus().isConnected());
}

void TestPortalHotkeyBackend::init()
{
    m_desktop = std::make_unique<QDBusConnection>(
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("stand-in desktop")));
    m_portal = std::make_unique<StandInShortcutsPortal>();
    QVERIFY(m_desktop->registerVirtualObject(PortalHotkeyBackend::path, m_portal.get(),
                                             QDBusConnection::SubPath));
    QVERIFY(m_desktop->registerService(PortalHotkeyBackend::service));

    m_bridge = std::make_unique<BridgeSimulator>();
    QVERIFY(m_bridge->listen());
}

void TestPortalHotkeyBackend::cleanup()
{
    m_bench.reset();
    m_bridge.reset();
    m_desktop->unregisterService(PortalHotkeyBackend::service);
    m_desktop->unregisterObject(PortalHotkeyBackend::path, QDBusConnection::UnregisterTree);
    QDBusConnection::disconnectFromBus(QStringLiteral("stand-in desktop"));
    m_desktop.reset();
    m_portal.reset();
}

/// Two stored shortcuts, then the handlers of the twelve actions, as at the application's start.
void TestPortalHotkeyBackend::start()
{
    auto backend = std::make_unique<PortalHotkeyBackend>(QDBusConnection::sessionBus(),
                                                         QStringLiteral("com.brambleworks.Test"));
    m_backend = backend.get();
    m_bench = std::make_unique<HotkeyBench>(std::move(backend));
    m_bench->setBridge(m_bridge->hostAndPort(), m_bridge->addUser());
    m_bench->setRooms({QStringLiteral("1"), QStringLiteral("2")});
    m_bench->hotkeys().setShortcut(controlAltK, HotkeyNames::allLightsOff());
    m_bench->hotkeys().setShortcut(superShiftF5, HotkeyNames::allLightsBrighter());
    m_bench->actions().registerHandlers(m_bench->hotkeys());
}

QStringList TestPortalHotkeyBackend::received() const
{
    QStringList lines;
    for (const SimulatedRequest& request : m_bridge->requests())
        lines.append(request.path.section(u'/', 3) + u' ' + QString::fromUtf8(request.rawBody));
    return lines;
}

void TestPortalHotkeyBackend::bindsEveryShortcutInOneSessionWithItsPreferredTrigger()
{
    start();
    QTRY_COMPARE(m_portal->bound.size(), 2);
    QCOMPARE(m_portal->calls,
             (QStringList{QStringLiteral("Register com.brambleworks.Test"), QStringLiteral("CreateSession"),
                          QStringLiteral("BindShortcuts")}));
    QCOMPARE(m_portal->bound.at(0).id, QStringLiteral("glowdeck-40-6144"));
    QCOMPARE(m_portal->bound.at(0).properties.value(QStringLiteral("preferred_trigger")).toString(),
             QStringLiteral("CTRL+ALT+k"));
    QCOMPARE(m_portal->bound.at(0).properties.value(QStringLiteral("description")).toString(),
             QStringLiteral("Switch every room off"));
    QCOMPARE(m_portal->bound.at(1).id, QStringLiteral("glowdeck-96-768"));
    QCOMPARE(m_portal->bound.at(1).properties.value(QStringLiteral("preferred_trigger")).toString(),
             QStringLiteral("SHIFT+LOGO+F5"));
    QVERIFY(m_backend->isAvailable());
}

void TestPortalHotkeyBackend::activatedRunsTheAction()
{
    start();
    QTRY_COMPARE(m_portal->bound.size(), 2);
    // A signal for a session that is not ours changes nothing.
    m_portal->pressAndRelease(*m_desktop, QStringLiteral("glowdeck-96-768"),
                              PortalHotkeyBackend::path + QStringLiteral("/session/1_1/other"));
    m_portal->pressAndRelease(*m_desktop, QStringLiteral("glowdeck-40-6144"), m_portal->session);
    const QStringList allOff{QStringLiteral(R"(groups/0/action {"on":false})")};
    QTRY_COMPARE(received(), allOff);
    QTRY_VERIFY(!m_bench->queue().isProcessing());
    QCOMPARE(received(), allOff);
}

void TestPortalHotkeyBackend::aNewCombinationIsBoundInAFreshSession()
{
    start();
    QTRY_COMPARE(m_portal->bound.size(), 2);
    const QString first = m_portal->session;

    m_bench->hotkeys().setShortcut(controlAltL, HotkeyNames::allLightsOff());
    QTRY_COMPARE(m_portal->calls.size(), 6);
    QCOMPARE(m_portal->calls.mid(3),
             (QStringList{QStringLiteral("Close ") + first, QStringLiteral("CreateSession"),
                          QStringLiteral("BindShortcuts")}));
    QStringList ids;
    for (const PortalShortcut& shortcut : std::as_const(m_portal->bound))
        ids << shortcut.id;
    ids.sort();
    QCOMPARE(ids, (QStringList{QStringLiteral("glowdeck-37-6144"), QStringLiteral("glowdeck-96-768")}));

    // The old session's shortcut is gone; the new one works.
    m_portal->pressAndRelease(*m_desktop, QStringLiteral("glowdeck-40-6144"), first);
    m_portal->pressAndRelease(*m_desktop, QStringLiteral("glowdeck-37-6144"), m_portal->session);
    QTRY_COMPARE(received(), QStringList{QStringLiteral(R"(groups/0/action {"on":false})")});
}

void TestPortalHotkeyBackend::withoutThePortalItSaysSoOnce()
{
    m_desktop->unregisterService(PortalHotkeyBackend::service);
    PortalHotkeyBackend backend(QDBusConnection::sessionBus(), QStringLiteral("com.brambleworks.Test"));
    QSignalSpy unavailable(&backend, &HotkeyBackend::unavailable);
    QVERIFY(unavailable.wait());
    QVERIFY(unavailable.first().first().toString().contains(QStringLiteral("no global shortcuts")));
    QVERIFY(!backend.isAvailable());
    QVERIFY(!backend.registerHotKey(1, controlAltK, QString()));
    QVERIFY(!unavailable.wait(200));
}

QTEST_GUILESS_MAIN(TestPortalHotkeyBackend)
#include "tst_portalhotkeybackend.moc"
