#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class HotkeyBackend;
class SettingsStore;

/// The application's named global shortcuts: keeps the key combination chosen for each name in the settings,
/// registers every combination that has a handler with the desktop (through a HotkeyBackend) and calls the
/// handlers when it is pressed or released anywhere. Lives on the main thread and is only touched there.
class GlobalHotkeys final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(GlobalHotkeys)

public:
    /// One key combination in the stored encoding, the same on every platform: the virtual key code of the
    /// key on Apple's extended keyboard layout and the modifier bits below.
    struct Shortcut
    {
        static constexpr qint64 command =
            256; ///< Command on a Mac keyboard, the Super (Windows) key elsewhere
        static constexpr qint64 shift = 512;
        static constexpr qint64 option = 2048; ///< Option on a Mac keyboard, Alt elsewhere
        static constexpr qint64 control = 4096;
        static constexpr qint64 allModifiers = command | shift | option | control;

        qint64 carbonKeyCode = 0;
        qint64 carbonModifiers = 0;

        bool operator==(const Shortcut&) const = default;

        /// The stored form: {"carbonKeyCode":37,"carbonModifiers":4352}.
        QString toJson() const;
        /// Nothing unless `text` is a JSON object with both members as whole numbers from 0 to 4294967295.
        static std::optional<Shortcut> fromJson(const QString& text);
    };

    /// A shortcut's name. Equal names have equal raw values.
    struct Name
    {
        /// The storage name: the shortcut is kept under "GlobalHotkeys_" + rawValue.
        QString rawValue;
        std::optional<Shortcut> defaultShortcut;
        /// What the desktop shows for it where it lists an application's shortcuts.
        QString description;

        bool operator==(const Name& other) const { return rawValue == other.rawValue; }
    };

    enum class EventType
    {
        keyDown,
        keyUp
    };

    using Action = std::function<void()>;

    /// Precedes the name's raw value in the settings key.
    static inline const QString keyPrefix = QStringLiteral("GlobalHotkeys_");

    GlobalHotkeys(SettingsStore& store, HotkeyBackend& backend, QObject* parent = nullptr);
    ~GlobalHotkeys() override;

    /// Stores the name's default shortcut, unless the settings already hold an entry for it (even the "no
    /// shortcut" marker) or it has none.
    void applyDefault(const Name& name);

    /// The stored shortcut; nothing when the entry is absent, false, or not a readable shortcut.
    std::optional<Shortcut> getShortcut(const Name& name) const;
    /// The same, straight from a store, for readers that register nothing (glowdeckctl).
    static std::optional<Shortcut> readShortcut(const SettingsStore& store, const QString& rawValue);

    /// Stores `shortcut` for the name (false when there is none) and registers it at once if the name has a
    /// handler; the combination it had before is given back to the desktop unless another handled name still
    /// uses it. Sends shortcutByNameDidChange either way.
    void setShortcut(std::optional<Shortcut> shortcut, const Name& name);

    /// Adds an action to run when the name's combination is pressed (released), and registers the stored
    /// combination if it is not yet. Actions are kept until removeAllHandlers().
    void onKeyDown(const Name& name, Action action);
    void onKeyUp(const Name& name, Action action);
    /// Gives every handled combination back to the desktop and forgets every action.
    void removeAllHandlers();

    /// While paused, presses and releases are not acted on (a recorder is recording: an existing combination
    /// is then recorded rather than run).
    bool isPaused() const { return m_paused; }
    void setPaused(bool paused) { m_paused = paused; }

    /// False once it is known that this desktop offers no way to register global shortcuts.
    bool isAvailable() const;
    /// Why not, once unavailable() was sent.
    QString unavailableReason() const { return m_unavailableReason; }
    /// Whether another program (the desktop, another application) holds the combination. The application's
    /// own registered combinations never count.
    bool isTakenBySystem(const Shortcut& shortcut) const;
    /// Whether the combination is registered with the desktop right now.
    bool isRegistered(const Shortcut& shortcut) const;

Q_SIGNALS:
    /// The stored shortcut of the name with this raw value changed.
    void shortcutByNameDidChange(const QString& rawValue);
    /// It turned out that this desktop offers no way to register global shortcuts; `reason` says why.
    void unavailable(const QString& reason);

private:
    using HandlerTable = QList<std::pair<Name, QList<Action>>>;

    void addHandler(HandlerTable& table, const Name& name, Action action);
    bool hasHandler(const QString& rawValue) const;
    /// Names with a handler whose stored shortcut is `shortcut`, key-down table first, each once.
    QList<Name> handledNamesWith(const Shortcut& shortcut) const;
    void registerShortcut(const Shortcut& shortcut);
    void unregisterShortcut(const Shortcut& shortcut);
    void onPressed(quint32 id);
    void onReleased(quint32 id);
    void dispatch(const HandlerTable& table, quint32 id);
    /// Says once per name that its stored entry cannot be read.
    void reportUnreadable(const Name& name);

    SettingsStore& m_store;
    HotkeyBackend& m_backend;
    QHash<quint32, Shortcut> m_hotKeys; // registered with the backend, by id
    quint32 m_lastHotKeyId = 0;
    HandlerTable m_keyDownHandlers;
    HandlerTable m_keyUpHandlers;
    QList<QString> m_reportedUnreadable;
    QString m_unavailableReason;
    bool m_paused = false;
};

size_t qHash(const GlobalHotkeys::Shortcut& shortcut, size_t seed = 0) noexcept;
