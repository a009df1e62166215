#include "hotkeys/portal/PortalHotkeyBackend.h"

#include "hotkeys/KeyTranslation.h"
#include "state/Console.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <algorithm>

namespace {

using Shortcut = GlobalHotkeys::Shortcut;

const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString sessionInterface = QStringLiteral("org.freedesktop.portal.Session");
const QString registryInterface = QStringLiteral("org.freedesktop.host.portal.Registry");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

// CreateSession and BindShortcuts answer at once with a request; what the user decides comes with its
// Response.
constexpr int callTimeoutMs = 5000;

void registerPortalTypes()
{
    static const bool registered = [] {
        qDBusRegisterMetaType<PortalShortcut>();
        qDBusRegisterMetaType<QList<PortalShortcut>>();
        return true;
    }();
    Q_UNUSED(registered);
}

/// The portal names requests and sessions after the caller's unique bus name: ":1.42" becomes "1_42".
QString senderPart(const QDBusConnection& bus)
{
    QString name = bus.baseService();
    if (name.startsWith(u':'))
        name.remove(0, 1);
    return name.replace(u'.', u'_');
}

/// "session_handle" is a string by the interface's word and an object path in some implementations.
QString pathOf(const QVariant& value)
{
    if (value.canConvert<QDBusObjectPath>() && value.userType() == qMetaTypeId<QDBusObjectPath>())
        return value.value<QDBusObjectPath>().path();
    return value.toString();
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

PortalHotkeyBackend::PortalHotkeyBackend(const QDBusConnection& bus, QString applicationId, QObject* parent)
    : HotkeyBackend(parent), m_bus(bus), m_applicationId(std::move(applicationId))
{
    registerPortalTypes();
    m_rebind.setSingleShot(true);
    m_rebind.setInterval(0);
    connect(&m_rebind, &QTimer::timeout, this, &PortalHotkeyBackend::bindAgain);
    if (!m_bus.isConnected()) {
        QTimer::singleShot(0, this, [this] { fail(QStringLiteral("there is no D-Bus session bus")); });
        return;
    }
    m_bus.connect(service, path, interface, QStringLiteral("Activated"), this,
                  SLOT(onActivated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    m_bus.connect(service, path, interface, QStringLiteral("Deactivated"), this,
                  SLOT(onDeactivated(QDBusObjectPath, QString, qulonglong, QVariantMap)));

    // Named first: a portal attributes the calls that follow to this id. Older portals have no registry.
    QDBusMessage registration =
        QDBusMessage::createMethodCall(service, path, registryInterface, QStringLiteral("Register"));
    registration << m_applicationId << QVariantMap();
    auto* registered = new QDBusPendingCallWatcher(m_bus.asyncCall(registration, callTimeoutMs), this);
    connect(registered, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        call->deleteLater();
        QDBusMessage get =
            QDBusMessage::createMethodCall(service, path, propertiesInterface, QStringLiteral("Get"));
        get << interface << QStringLiteral("version");
        auto* probe = new QDBusPendingCallWatcher(m_bus.asyncCall(get, callTimeoutMs), this);
        connect(probe, &QDBusPendingCallWatcher::finished, this, &PortalHotkeyBackend::onProbed);
    });
}

PortalHotkeyBackend::~PortalHotkeyBackend()
{
    stopListening();
    closeSession();
}

bool PortalHotkeyBackend::registerHotKey(quint32 id, const Shortcut& shortcut, const QString& description)
{
    if (m_state == State::unavailable)
        return false;
    m_hotKeys.insert(id, {shortcut, description});
    m_rebind.start();
    return true;
}

void PortalHotkeyBackend::unregisterHotKey(quint32 id)
{
    if (m_hotKeys.remove(id))
        m_rebind.start();
}

QString PortalHotkeyBackend::shortcutId(const Shortcut& shortcut)
{
    return QStringLiteral("glowdeck-%1-%2").arg(shortcut.carbonKeyCode).arg(shortcut.carbonModifiers);
}

QString PortalHotkeyBackend::preferredTrigger(const Shortcut& shortcut)
{
    const QString key = KeyTranslation::x11KeysymName(shortcut.carbonKeyCode);
    if (key.isEmpty())
        return {}; // the desktop lets the user choose
    QStringList parts;
    const std::pair<qint64, const char*> modifiers[] = {{Shortcut::control, "CTRL"},
                                                        {Shortcut::option, "ALT"},
                                                        {Shortcut::shift, "SHIFT"},
                                                        {Shortcut::command, "LOGO"}};
    for (const auto& [bit, name] : modifiers) {
        if (shortcut.carbonModifiers & bit)
            parts.append(QString::fromLatin1(name));
    }
    parts.append(key);
    return parts.join(u'+');
}

void PortalHotkeyBackend::onProbed(QDBusPendingCallWatcher* call)
{
    call->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *call;
    if (reply.isError()) {
        fail(QStringLiteral("the desktop portal offers no global shortcuts (%1)")
                 .arg(reply.error().message()));
        return;
    }
    m_state = State::idle;
    if (!m_hotKeys.isEmpty())
        bindAgain();
}

void PortalHotkeyBackend::bindAgain()
{
    switch (m_state) {
    case State::probing:
    case State::unavailable:
        return; // the probe binds when it succeeds
    case State::creating:
    case State::binding:
        m_changed = true;
        return;
    case State::idle:
        break;
    }
    // A session is bound once; a new set gets a new session.
    closeSession();
    m_changed = false;
    if (!m_hotKeys.isEmpty())
        createSession();
}

void PortalHotkeyBackend::createSession()
{
    m_state = State::creating;
    const QString token = newToken();
    const QVariantMap options{{QStringLiteral("handle_token"), token},
                              {QStringLiteral("session_handle_token"), newToken()}};
    request(QStringLiteral("CreateSession"), {options}, token);
}

void PortalHotkeyBackend::bindShortcuts()
{
    m_state = State::binding;
    m_changed = false;
    QList<quint32> ids = m_hotKeys.keys();
    std::sort(ids.begin(), ids.end());
    QList<PortalShortcut> shortcuts;
    for (const quint32 id : std::as_const(ids)) {
        const HotKey& hotKey = m_hotKeys[id];
        QVariantMap properties{{QStringLiteral("description"), hotKey.description}};
        if (const QString trigger = preferredTrigger(hotKey.shortcut); !trigger.isEmpty())
            properties.insert(QStringLiteral("preferred_trigger"), trigger);
        shortcuts.append({shortcutId(hotKey.shortcut), properties});
    }
    const QString token = newToken();
    request(QStringLiteral("BindShortcuts"),
            {QVariant::fromValue(QDBusObjectPath(m_session)), QVariant::fromValue(shortcuts), QString(),
             QVariantMap{{QStringLiteral("handle_token"), token}}},
            token);
}

void PortalHotkeyBackend::closeSession()
{
    if (m_session.isEmpty())
        return;
    m_bus.asyncCall(
        QDBusMessage::createMethodCall(service, m_session, sessionInterface, QStringLiteral("Close")));
    m_session.clear();
}

void PortalHotkeyBackend::request(const QString& method, const QList<QVariant>& arguments,
                                  const QString& token)
{
    // Listening before the call: the Response may come before the call's own answer.
    listenForResponse(QStringLiteral("%1/request/%2/%3").arg(path, senderPart(m_bus), token));
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, callTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, method](QDBusPendingCallWatcher* call) {
        call->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *call;
        if (!reply.isError()) {
            // An older portal may name the request differently from the token.
            if (reply.value().path() != m_pendingRequest && !m_pendingRequest.isEmpty())
                listenForResponse(reply.value().path());
            return;
        }
        stopListening();
        if (m_state == State::creating) {
            fail(QStringLiteral("the desktop portal refused %1 (%2)").arg(method, reply.error().message()));
            return;
        }
        m_state = State::idle;
        printLine(QStringLiteral("Glowdeck: the desktop portal did not bind the global shortcuts: %1")
                      .arg(reply.error().message()));
    });
}

void PortalHotkeyBackend::listenForResponse(const QString& requestPath)
{
    stopListening();
    m_pendingRequest = requestPath;
    m_bus.connect(service, requestPath, requestInterface, QStringLiteral("Response"), this,
                  SLOT(onResponse(uint, QVariantMap, QDBusMessage)));
}

void PortalHotkeyBackend::stopListening()
{
    if (m_pendingRequest.isEmpty())
        return;
    m_bus.disconnect(service, m_pendingRequest, requestInterface, QStringLiteral("Response"), this,
                     SLOT(onResponse(uint, QVariantMap, QDBusMessage)));
    m_pendingRequest.clear();
}

void PortalHotkeyBackend::onResponse(uint response, const QVariantMap& results, const QDBusMessage& message)
{
    if (message.path() != m_pendingRequest)
        return;
    stopListening();
    if (m_state == State::creating) {
        m_session = response == 0 ? pathOf(results.value(QStringLiteral("session_handle"))) : QString();
        if (m_session.isEmpty()) {
            fail(QStringLiteral("the desktop portal opened no session for global shortcuts (answer %1)")
                     .arg(response));
            return;
        }
        bindShortcuts();
        return;
    }
    if (m_state != State::binding)
        return;
    m_state = State::idle;
    if (response != 0) {
        // 1: the user said no in the desktop's dialog.
        printLine(
            QStringLiteral("Glowdeck: the desktop did not take the global shortcuts (answer %1); they do "
                           "nothing until one is recorded again.")
                .arg(response));
    } else {
        QList<PortalShortcut> bound;
        results.value(QStringLiteral("shortcuts")).value<QDBusArgument>() >> bound;
        QStringList triggers;
        for (const PortalShortcut& shortcut : std::as_const(bound))
            triggers.append(shortcut.properties.value(QStringLiteral("trigger_description")).toString());
        printLine(QStringLiteral("Glowdeck: the desktop bound %1 global shortcuts: %2")
                      .arg(bound.size())
                      .arg(triggers.join(QStringLiteral(", "))));
    }
    if (m_changed)
        bindAgain();
}

void PortalHotkeyBackend::onActivated(const QDBusObjectPath& session, const QString& shortcutId, qulonglong,
                                      const QVariantMap&)
{
    if (const quint32 id = hotKeyFor(session, shortcutId))
        Q_EMIT pressed(id);
}

void PortalHotkeyBackend::onDeactivated(const QDBusObjectPath& session, const QString& shortcutId, qulonglong,
                                        const QVariantMap&)
{
    if (const quint32 id = hotKeyFor(session, shortcutId))
        Q_EMIT released(id);
}

quint32 PortalHotkeyBackend::hotKeyFor(const QDBusObjectPath& session, const QString& shortcutId) const
{
    if (m_session.isEmpty() || session.path() != m_session)
        return 0;
    for (auto hotKey = m_hotKeys.cbegin(); hotKey != m_hotKeys.cend(); ++hotKey) {
        if (PortalHotkeyBackend::shortcutId(hotKey->shortcut) == shortcutId)
            return hotKey.key();
    }
    return 0;
}

void PortalHotkeyBackend::fail(const QString& reason)
{
    if (m_state == State::unavailable)
        return;
    m_state = State::unavailable;
    stopListening();
    m_session.clear();
    Q_EMIT unavailable(reason);
}

QString PortalHotkeyBackend::newToken()
{
    return QStringLiteral("glowdeck%1").arg(++m_tokens);
}
