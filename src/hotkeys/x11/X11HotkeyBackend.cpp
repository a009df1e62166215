#include "hotkeys/x11/X11HotkeyBackend.h"

#include "hotkeys/KeyTranslation.h"

#include <QGuiApplication>
#include <QTimer>

#include <xcb/xcb_keysyms.h>

#include <cstdlib>
#include <utility>

namespace {

using Shortcut = GlobalHotkeys::Shortcut;

constexpr xcb_keysym_t numLockKeysym = 0xff7f;
// The modifiers a shortcut is made of; the lock keys and the pointer buttons in an event's state are not.
constexpr uint16_t shortcutModifiers =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

uint16_t x11Modifiers(qint64 carbonModifiers)
{
    uint16_t modifiers = 0;
    if (carbonModifiers & Shortcut::shift)
        modifiers |= XCB_MOD_MASK_SHIFT;
    if (carbonModifiers & Shortcut::control)
        modifiers |= XCB_MOD_MASK_CONTROL;
    if (carbonModifiers & Shortcut::option)
        modifiers |= XCB_MOD_MASK_1; // Alt
    if (carbonModifiers & Shortcut::command)
        modifiers |= XCB_MOD_MASK_4; // Super
    return modifiers;
}

} // namespace

std::unique_ptr<X11HotkeyBackend> X11HotkeyBackend::create()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return nullptr;
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
    if (!connection || xcb_connection_has_error(connection))
        return nullptr;
    return std::unique_ptr<X11HotkeyBackend>(new X11HotkeyBackend(connection));
}

X11HotkeyBackend::X11HotkeyBackend(xcb_connection_t* connection)
    : m_connection(connection), m_symbols(xcb_key_symbols_alloc(connection)), m_numLockMask(XCB_MOD_MASK_2)
{
    for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection)); screens.rem;
         xcb_screen_next(&screens))
        m_roots.append(screens.data->root);
    readNumLockMask();
    qGuiApp->installNativeEventFilter(this);
}

X11HotkeyBackend::~X11HotkeyBackend()
{
    qGuiApp->removeNativeEventFilter(this);
    for (const HotKey& hotKey : std::as_const(m_hotKeys))
        ungrab(hotKey.grabs);
    xcb_flush(m_connection);
    xcb_key_symbols_free(m_symbols);
}

bool X11HotkeyBackend::registerHotKey(quint32 id, const Shortcut& shortcut, const QString&)
{
    const QList<Grab> grabs = grabsFor(shortcut);
    if (grabs.isEmpty() || !grab(grabs))
        return false;
    m_hotKeys.insert(id, {shortcut, grabs});
    return true;
}

void X11HotkeyBackend::unregisterHotKey(quint32 id)
{
    const auto hotKey = m_hotKeys.constFind(id);
    if (hotKey == m_hotKeys.cend())
        return;
    ungrab(hotKey->grabs);
    xcb_flush(m_connection);
    m_hotKeys.erase(hotKey);
}

bool X11HotkeyBackend::isTakenBySystem(const Shortcut& shortcut) const
{
    // Our own grab on the same key would be replaced by the trial, and then let go: never try one of ours.
    for (const HotKey& hotKey : m_hotKeys) {
        if (hotKey.shortcut == shortcut)
            return false;
    }
    const QList<Grab> grabs = grabsFor(shortcut);
    if (grabs.isEmpty() || !grab(grabs))
        return !grabs.isEmpty();
    ungrab(grabs);
    xcb_flush(m_connection);
    return false;
}

QList<X11HotkeyBackend::Grab> X11HotkeyBackend::grabsFor(const Shortcut& shortcut) const
{
    const std::optional<quint32> keysym = KeyTranslation::x11Keysym(shortcut.carbonKeyCode);
    if (!keysym)
        return {};
    QList<Grab> grabs;
    if (xcb_keycode_t* keycodes = xcb_key_symbols_get_keycode(m_symbols, *keysym)) {
        const uint16_t modifiers = x11Modifiers(shortcut.carbonModifiers);
        for (xcb_keycode_t* keycode = keycodes; *keycode != XCB_NO_SYMBOL; ++keycode) {
            const bool known = std::any_of(grabs.cbegin(), grabs.cend(),
                                           [&](const Grab& g) { return g.keycode == *keycode; });
            if (!known)
                grabs.append({*keycode, modifiers});
        }
        std::free(keycodes);
    }
    return grabs;
}

bool X11HotkeyBackend::grab(const QList<Grab>& grabs) const
{
    // A grab matches its modifiers exactly: grab again with Num Lock and Caps Lock on, or the shortcut stops
    // working while either is.
    const uint16_t locks[] = {0, m_numLockMask, XCB_MOD_MASK_LOCK,
                              uint16_t(m_numLockMask | XCB_MOD_MASK_LOCK)};
    QList<xcb_void_cookie_t> cookies;
    for (const xcb_window_t root : m_roots) {
        for (const Grab& grab : grabs) {
            for (const uint16_t lock : locks)
                cookies.append(xcb_grab_key_checked(m_connection, 0, root, grab.modifiers | lock,
                                                    grab.keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        }
    }
    bool refused = false;
    for (const xcb_void_cookie_t cookie : cookies) {
        if (xcb_generic_error_t* error = xcb_request_check(m_connection, cookie)) {
            refused = true; // BadAccess: another client holds it
            std::free(error);
        }
    }
    if (refused) {
        ungrab(grabs);
        xcb_flush(m_connection);
    }
    return !refused;
}

void X11HotkeyBackend::ungrab(const QList<Grab>& grabs) const
{
    const uint16_t locks[] = {0, m_numLockMask, XCB_MOD_MASK_LOCK,
                              uint16_t(m_numLockMask | XCB_MOD_MASK_LOCK)};
    for (const xcb_window_t root : m_roots) {
        for (const Grab& grab : grabs) {
            for (const uint16_t lock : locks)
                xcb_ungrab_key(m_connection, grab.keycode, root, grab.modifiers | lock);
        }
    }
}

void X11HotkeyBackend::readNumLockMask()
{
    m_numLockMask = XCB_MOD_MASK_2; // where nearly every keymap has it
    xcb_keycode_t* numLock = xcb_key_symbols_get_keycode(m_symbols, numLockKeysym);
    xcb_get_modifier_mapping_reply_t* mapping =
        xcb_get_modifier_mapping_reply(m_connection, xcb_get_modifier_mapping(m_connection), nullptr);
    if (numLock && mapping) {
        const xcb_keycode_t* keycodes = xcb_get_modifier_mapping_keycodes(mapping);
        const int perModifier = mapping->keycodes_per_modifier;
        for (int modifier = 0; modifier < 8; ++modifier) {
            for (int i = 0; i < perModifier; ++i) {
                const xcb_keycode_t keycode = keycodes[modifier * perModifier + i];
                for (xcb_keycode_t* k = numLock; keycode != 0 && *k != XCB_NO_SYMBOL; ++k) {
                    if (*k == keycode)
                        m_numLockMask = uint16_t(1U << modifier);
                }
            }
        }
    }
    std::free(mapping);
    std::free(numLock);
}

void X11HotkeyBackend::onMappingChanged()
{
    for (const HotKey& hotKey : std::as_const(m_hotKeys))
        ungrab(hotKey.grabs);
    readNumLockMask();
    for (auto hotKey = m_hotKeys.begin(); hotKey != m_hotKeys.end(); ++hotKey) {
        hotKey->grabs = grabsFor(hotKey->shortcut);
        if (!grab(hotKey->grabs))
            hotKey->grabs.clear();
    }
    m_held.clear();
    m_pendingRelease.reset();
    m_toldRelease.reset();
    xcb_flush(m_connection);
}

bool X11HotkeyBackend::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    auto* event = static_cast<xcb_generic_event_t*>(message);
    switch (event->response_type & ~0x80) {
    case XCB_KEY_PRESS:
    case XCB_KEY_RELEASE: {
        auto* key = reinterpret_cast<xcb_key_press_event_t*>(event);
        // Only our grabs on a root window; keys typed into our own windows go on to Qt.
        if (!m_roots.contains(key->event))
            return false;
        onKeyEvent((event->response_type & ~0x80) == XCB_KEY_PRESS, key->detail, key->state, key->time);
        return true;
    }
    case XCB_MAPPING_NOTIFY: {
        auto* mapping = reinterpret_cast<xcb_mapping_notify_event_t*>(event);
        if (mapping->request == XCB_MAPPING_KEYBOARD || mapping->request == XCB_MAPPING_MODIFIER) {
            xcb_refresh_keyboard_mapping(m_symbols, mapping);
            onMappingChanged();
        }
        return false; // Qt follows the mapping too
    }
    default:
        return false;
    }
}

void X11HotkeyBackend::onKeyEvent(bool press, xcb_keycode_t keycode, uint16_t state, xcb_timestamp_t time)
{
    if (!press) {
        // Matched on the key alone: the modifiers may be let go first (xdotool does), and the release still
        // belongs to the shortcut that was pressed.
        const auto held = m_held.constFind(keycode);
        if (held == m_held.cend())
            return;
        // A key held down repeats as a release and a press with the same time: the release is told once the
        // events read with it are handled, unless such a press took it back. One press, one action.
        reportPendingRelease();
        m_pendingRelease = Release{keycode, held->id, time, held->releaseTold};
        m_held.erase(held);
        QTimer::singleShot(0, this, &X11HotkeyBackend::reportPendingRelease);
        return;
    }
    if (m_pendingRelease && m_pendingRelease->keycode == keycode && m_pendingRelease->time == time) {
        m_held.insert(keycode, {m_pendingRelease->id, m_pendingRelease->told});
        m_pendingRelease.reset();
        return;
    }
    // The press of a repeat can also come in a later read than its release, on a busy machine: the release
    // was told already, and the key is still the same press. It stays held, so that its further repeats do
    // not count as presses, and its real release is not told twice.
    if (m_toldRelease && m_toldRelease->keycode == keycode && m_toldRelease->time == time) {
        m_held.insert(keycode, {m_toldRelease->id, true});
        m_toldRelease.reset();
        return;
    }
    reportPendingRelease();
    if (m_held.contains(keycode))
        return; // repeated without releases (detectable auto-repeat)
    const uint16_t modifiers = state & shortcutModifiers;
    for (auto hotKey = m_hotKeys.cbegin(); hotKey != m_hotKeys.cend(); ++hotKey) {
        const bool matches = std::any_of(hotKey->grabs.cbegin(), hotKey->grabs.cend(), [&](const Grab& g) {
            return g.keycode == keycode && g.modifiers == modifiers;
        });
        if (matches) {
            m_held.insert(keycode, {hotKey.key()});
            Q_EMIT pressed(hotKey.key());
            return;
        }
    }
}

void X11HotkeyBackend::reportPendingRelease()
{
    if (!m_pendingRelease)
        return;
    const Release release = *std::exchange(m_pendingRelease, std::nullopt);
    m_toldRelease = release;
    m_toldRelease->told = true;
    if (!release.told)
        Q_EMIT released(release.id);
}
