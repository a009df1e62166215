#include "hotkeys/HotkeyBackend.h"
#include "hotkeys/none/NullHotkeyBackend.h"
#include "hotkeys/portal/PortalHotkeyBackend.h"
#include "hotkeys/x11/X11HotkeyBackend.h"

#include <QDBusConnection>
#include <QGuiApplication>

std::unique_ptr<HotkeyBackend> createHotkeyBackend(const QString& applicationId)
{
    // X11 grabs where Qt runs on xcb; the desktop portal where it does not (Wayland, where grabs see
    // nothing).
    if (std::unique_ptr<X11HotkeyBackend> x11 = X11HotkeyBackend::create())
        return x11;
    const QString platform = QGuiApplication::platformName();
    // These draw nowhere and have no desktop around them to ask (tests, headless runs).
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal"))
        return std::make_unique<NullHotkeyBackend>(
            QStringLiteral("Qt runs on \"%1\", which has no desktop around it").arg(platform));
    return std::make_unique<PortalHotkeyBackend>(QDBusConnection::sessionBus(), applicationId);
}
