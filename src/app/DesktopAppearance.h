#pragma once

#include <QObject>

#include <memory>

/// Tells whether the desktop asks for dark windows, where Qt 6.4 does not follow it by itself: on Linux the
/// XDG desktop portal's "color-scheme" setting, which GNOME, KDE Plasma and most current desktops publish.
/// This base class never says anything: it is the back-end for systems whose Qt already follows the system.
/// CMake compiles exactly one `createDesktopAppearance`.
class DesktopAppearance : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DesktopAppearance)

public:
    using QObject::QObject;

Q_SIGNALS:
    /// The desktop prefers dark windows (true) or has no such preference (false); sent once known and on
    /// every change.
    void prefersDarkChanged(bool dark);
};

/// The back-end for this platform.
std::unique_ptr<DesktopAppearance> createDesktopAppearance();
