#pragma once

#include "hotkeys/HotkeyBackend.h"

#include <QDBusConnection>
#include <QHash>
#include <QList>
#include <QTimer>
#include <QVariantMap>

class QDBusArgument;
class QDBusMessage;
class QDBusObjectPath;
class QDBusPendingCallWatcher;

/// One shortcut as the desktop portal's GlobalShortcuts interface takes and gives it: (sa{sv}).
struct PortalShortcut
{
    QString id;
    QVariantMap properties; ///< "description", "preferred_trigger"; answers add "trigger_description"
};
Q_DECLARE_METATYPE(PortalShortcut)
QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut);

/// Global shortcuts through the XDG desktop portal (org.freedesktop.portal.GlobalShortcuts), the way to have
/// them on Wayland, where X11 grabs see nothing: a session holds every registered combination, bound with its
/// preferred trigger; the desktop may ask the user and may choose other keys. Activated and Deactivated
/// arrive as signals on the session bus. Any change binds everything again in a fresh session, after the
/// current event, so the registrations at start-up cost one session.
class PortalHotkeyBackend final : public HotkeyBackend
{
    Q_OBJECT

public:
    static inline const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
    static inline const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
    static inline const QString interface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");

    /// Names itself to the portal as `applicationId` (portals identify programs outside a sandbox by it) and
    /// asks whether the portal has the interface; without it, unavailable() follows.
    PortalHotkeyBackend(const QDBusConnection& bus, QString applicationId, QObject* parent = nullptr);
    ~PortalHotkeyBackend() override;

    bool registerHotKey(quint32 id, const GlobalHotkeys::Shortcut& shortcut,
                        const QString& description) override;
    void unregisterHotKey(quint32 id) override;
    bool isAvailable() const override { return m_state != State::unavailable; }

    /// The portal's identifier of a combination, e.g. "glowdeck-40-6144". It stands for the keys rather than
    /// the name, so a combination recorded anew is bound anew even where the desktop remembers old bindings.
    static QString shortcutId(const GlobalHotkeys::Shortcut& shortcut);
    /// The trigger as freedesktop.org's shortcut format writes it, e.g. "CTRL+ALT+k" or "LOGO+SHIFT+F5".
    static QString preferredTrigger(const GlobalHotkeys::Shortcut& shortcut);

private Q_SLOTS:
    void onResponse(uint response, const QVariantMap& results, const QDBusMessage& message);
    void onActivated(const QDBusObjectPath& session, const QString& shortcutId, qulonglong timestamp,
                     const QVariantMap& options);
    void onDeactivated(const QDBusObjectPath& session, const QString& shortcutId, qulonglong timestamp,
                       const QVariantMap& options);

private:
    enum class State
    {
        probing,     ///< asking whether the portal has the interface
        idle,        ///< available; nothing bound or everything bound
        creating,    ///< waiting for a new session
        binding,     ///< waiting for the answer to BindShortcuts
        unavailable, ///< no portal, or one without global shortcuts
    };
    struct HotKey
    {
        GlobalHotkeys::Shortcut shortcut;
        QString description;
    };

    void onProbed(QDBusPendingCallWatcher* call);
    /// Binds the current set in a fresh session, or marks it for when the session under way is bound.
    void bindAgain();
    void createSession();
    void bindShortcuts();
    void closeSession();
    /// Calls `method` and waits for the Response signal of the request it answers with.
    void request(const QString& method, const QList<QVariant>& arguments, const QString& token);
    void listenForResponse(const QString& requestPath);
    void stopListening();
    void fail(const QString& reason);
    /// The id of the registered hot key the portal's shortcut id names, 0 for none.
    quint32 hotKeyFor(const QDBusObjectPath& session, const QString& shortcutId) const;
    QString newToken();

    QDBusConnection m_bus;
    QString m_applicationId;
    State m_state = State::probing;
    QHash<quint32, HotKey> m_hotKeys;
    QTimer m_rebind;          // binds after the current event, once for any number of changes
    bool m_changed = false;   // the set changed while a session was being made or bound
    QString m_session;        // the session's object path, empty while there is none
    QString m_pendingRequest; // the request whose Response is awaited
    quint32 m_tokens = 0;
};
