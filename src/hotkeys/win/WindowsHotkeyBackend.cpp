#include "hotkeys/HotkeyBackend.h"
#include "hotkeys/KeyTranslation.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QHash>

#include <windows.h>

namespace {

using Shortcut = GlobalHotkeys::Shortcut;

/// The virtual-key code of a stored key, through the X11 keysym of its symbol; 0 when Windows has none.
UINT virtualKey(qint64 carbonKeyCode)
{
    const std::optional<quint32> keysym = KeyTranslation::x11Keysym(carbonKeyCode);
    if (!keysym)
        return 0;
    const quint32 sym = *keysym;
    if (sym >= 'a' && sym <= 'z')
        return UINT(sym - 'a' + 'A');
    if (sym >= '0' && sym <= '9')
        return UINT(sym);
    if (sym >= 0xffbe && sym <= 0xffd1) // F1 to F20
        return UINT(VK_F1 + (sym - 0xffbe));
    if (sym >= 0xffb0 && sym <= 0xffb9) // keypad digits
        return UINT(VK_NUMPAD0 + (sym - 0xffb0));
    switch (sym) {
    case 0x20:
        return VK_SPACE;
    case 0x27:
        return VK_OEM_7;
    case 0x2c:
        return VK_OEM_COMMA;
    case 0x2d:
        return VK_OEM_MINUS;
    case 0x2e:
        return VK_OEM_PERIOD;
    case 0x2f:
        return VK_OEM_2;
    case 0x3b:
        return VK_OEM_1;
    case 0x3d:
        return VK_OEM_PLUS;
    case 0x5b:
        return VK_OEM_4;
    case 0x5c:
        return VK_OEM_5;
    case 0x5d:
        return VK_OEM_6;
    case 0x60:
        return VK_OEM_3;
    case 0xff08:
        return VK_BACK;
    case 0xff09:
        return VK_TAB;
    case 0xff0d:
        return VK_RETURN;
    case 0xff1b:
        return VK_ESCAPE;
    case 0xff50:
        return VK_HOME;
    case 0xff51:
        return VK_LEFT;
    case 0xff52:
        return VK_UP;
    case 0xff53:
        return VK_RIGHT;
    case 0xff54:
        return VK_DOWN;
    case 0xff55:
        return VK_PRIOR;
    case 0xff56:
        return VK_NEXT;
    case 0xff57:
        return VK_END;
    case 0xff63:
        return VK_INSERT;
    case 0xff8d:
        return VK_RETURN;
    case 0xffaa:
        return VK_MULTIPLY;
    case 0xffab:
        return VK_ADD;
    case 0xffad:
        return VK_SUBTRACT;
    case 0xffae:
        return VK_DECIMAL;
    case 0xffaf:
        return VK_DIVIDE;
    case 0xffff:
        return VK_DELETE;
    default:
        return 0;
    }
}

UINT windowsModifiers(qint64 carbonModifiers)
{
    UINT modifiers = MOD_NOREPEAT;
    if (carbonModifiers & Shortcut::control)
        modifiers |= MOD_CONTROL;
    if (carbonModifiers & Shortcut::option)
        modifiers |= MOD_ALT;
    if (carbonModifiers & Shortcut::shift)
        modifiers |= MOD_SHIFT;
    if (carbonModifiers & Shortcut::command)
        modifiers |= MOD_WIN;
    return modifiers;
}

/// Global shortcuts with RegisterHotKey on the main thread's message queue. Windows tells only of the press;
/// the release is reported right after it.
class WindowsHotkeyBackend final : public HotkeyBackend, public QAbstractNativeEventFilter
{
public:
    WindowsHotkeyBackend() { QCoreApplication::instance()->installNativeEventFilter(this); }
    ~WindowsHotkeyBackend() override
    {
        QCoreApplication::instance()->removeNativeEventFilter(this);
        for (const int id : m_ids)
            UnregisterHotKey(nullptr, id);
    }

    bool registerHotKey(quint32 id, const Shortcut& shortcut, const QString&) override
    {
        const UINT key = virtualKey(shortcut.carbonKeyCode);
        // Hot-key identifiers of an application lie below 0xC000.
        if (key == 0 || id >= 0xC000 ||
            !RegisterHotKey(nullptr, int(id), windowsModifiers(shortcut.carbonModifiers), key))
            return false;
        m_ids.append(int(id));
        return true;
    }

    void unregisterHotKey(quint32 id) override
    {
        if (m_ids.removeOne(int(id)))
            UnregisterHotKey(nullptr, int(id));
    }

    bool isTakenBySystem(const Shortcut& shortcut) const override
    {
        // A trial registration under a spare identifier: it fails while another program holds the
        // combination.
        constexpr int trialId = 0xBFFF;
        const UINT key = virtualKey(shortcut.carbonKeyCode);
        if (key == 0)
            return false;
        if (!RegisterHotKey(nullptr, trialId, windowsModifiers(shortcut.carbonModifiers), key))
            return GetLastError() == ERROR_HOTKEY_ALREADY_REGISTERED;
        UnregisterHotKey(nullptr, trialId);
        return false;
    }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) override
    {
        if (eventType != "windows_generic_MSG")
            return false;
        const MSG* msg = static_cast<const MSG*>(message);
        if (msg->message != WM_HOTKEY || !m_ids.contains(int(msg->wParam)))
            return false;
        Q_EMIT pressed(quint32(msg->wParam));
        Q_EMIT released(quint32(msg->wParam));
        return true;
    }

private:
    QList<int> m_ids;
};

} // namespace

std::unique_ptr<HotkeyBackend> createHotkeyBackend(const QString&)
{
    return std::make_unique<WindowsHotkeyBackend>();
}
