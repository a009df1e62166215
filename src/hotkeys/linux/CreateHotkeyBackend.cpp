#include "hotkeys/HotkeyBackend.h"
#include "hotkeys/none/NullHotkeyBackend.h"
#include "hotkeys/x11/X11HotkeyBackend.h"

#include <QGuiApplication>

std::unique_ptr<HotkeyBackend> createHotkeyBackend(const QString&)
{
    if (std::unique_ptr<X11HotkeyBackend> x11 = X11HotkeyBackend::create())
        return x11;
    return std::make_unique<NullHotkeyBackend>(
        QStringLiteral("Qt runs on \"%1\", where X11 key grabs see nothing")
            .arg(QGuiApplication::platformName()));
}
