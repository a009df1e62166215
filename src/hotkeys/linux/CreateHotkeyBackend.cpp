#include "hotkeys/HotkeyBackend.h"
#include "hotkeys/none/NullHotkeyBackend.h"
#include "hotkeys/portal/PortalHotkeyBackend.h"
#include "hotkeys/x11/X11HotkeyBackend.h"

#include <QDBusConnection>
#include <QGuiApplication>

std::unique_ptr<HotkeyBackend> createHotkeyBackend(const QString& applicationId)
{
    // "x11", "portal" or "none" overrides the choice: under XWayland, for one, X11 grabs only see keys typed
    // into X11 windows, and the portal serves better.
    const QString forced = qEnvironmentVariable("GLOWDECK_GLOBAL_SHORTCUTS");
    if (forced == QLatin1String("none"))
        return std::make_unique<NullHotkeyBackend>(QStringLiteral("GLOWDECK_GLOBAL_SHORTCUTS is \"none\""));
    if (forced == QLatin1String("portal"))
        return std::make_unique<PortalHotkeyBackend>(QDBusConnection::sessionBus(), applicationId);

    // X11 grabs where Qt runs on xcb; the desktop portal where it does not (Wayland, where grabs see
    // nothing).
    if (std::unique_ptr<X11HotkeyBackend> x11 = X11HotkeyBackend::create())
        return x11;
    const QString platform = QGuiApplication::platformName();
    // These draw nowhere and have no desktop around them to ask (tests, headless runs).
    if (forced == QLatin1String("x11") || platform == QLatin1String("offscreen") ||
        platform == QLatin1String("minimal"))
        return std::make_unique<NullHotkeyBackend>(
            QStringLiteral("Qt runs on \"%1\", where X11 key grabs see nothing").arg(platform));
    return std::make_unique<PortalHotkeyBackend>(QDBusConnection::sessionBus(), applicationId);
}
