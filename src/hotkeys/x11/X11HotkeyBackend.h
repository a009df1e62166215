#pragma once

#include "hotkeys/HotkeyBackend.h"

#include <QAbstractNativeEventFilter>
#include <QHash>
#include <QList>

#include <memory>
#include <optional>

#include <xcb/xcb.h>

struct _XCBKeySymbols;

/// Global shortcuts on X11: a passive grab of each combination on the root window, on Qt's own connection;
/// the key events come through a native event filter, on the main thread. A combination another client holds
/// already cannot be grabbed (BadAccess): it fails quietly and counts as taken by the system.
class X11HotkeyBackend final : public HotkeyBackend, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Nothing unless Qt runs on xcb.
    static std::unique_ptr<X11HotkeyBackend> create();
    ~X11HotkeyBackend() override;

    bool registerHotKey(quint32 id, const GlobalHotkeys::Shortcut& shortcut,
                        const QString& description) override;
    void unregisterHotKey(quint32 id) override;
    bool isTakenBySystem(const GlobalHotkeys::Shortcut& shortcut) const override;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    /// One key with its modifier mask, as X11 sees it.
    struct Grab
    {
        xcb_keycode_t keycode;
        uint16_t modifiers;
    };
    struct HotKey
    {
        GlobalHotkeys::Shortcut shortcut;
        QList<Grab> grabs;
    };

    explicit X11HotkeyBackend(xcb_connection_t* connection);

    /// The grabs a shortcut needs: every key that types its keysym, with its modifiers. Empty when the
    /// keyboard has no such key.
    QList<Grab> grabsFor(const GlobalHotkeys::Shortcut& shortcut) const;
    /// Grabs everything in `grabs` on every root window, with each lock-key variant. All or nothing: on a
    /// refusal whatever was grabbed is let go again and false is returned.
    bool grab(const QList<Grab>& grabs) const;
    void ungrab(const QList<Grab>& grabs) const;
    /// The modifier bit Num Lock is on in the current keyboard mapping.
    void readNumLockMask();
    /// The keyboard mapping changed: the same shortcuts may now sit on other keys.
    void onMappingChanged();
    void onKeyEvent(bool press, xcb_keycode_t keycode, uint16_t state, xcb_timestamp_t time);
    /// Reports the release that no auto-repeated press took back.
    void reportPendingRelease();

    xcb_connection_t* m_connection;
    QList<xcb_window_t> m_roots;
    _XCBKeySymbols* m_symbols;
    uint16_t m_numLockMask;
    QHash<quint32, HotKey> m_hotKeys;
    struct Held
    {
        quint32 id;
        bool releaseTold = false; // told early: a repeat's press came too late to take the release back
    };
    QHash<xcb_keycode_t, Held> m_held; // keys pressed as a hot key and not yet released
    struct Release
    {
        xcb_keycode_t keycode;
        quint32 id;
        xcb_timestamp_t time;
        bool told = false;
    };
    std::optional<Release> m_pendingRelease; // until the events that came with it are read
    std::optional<Release> m_toldRelease;    // the last release told, to know its repeated press again
};
