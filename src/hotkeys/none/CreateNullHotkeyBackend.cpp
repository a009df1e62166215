#include "hotkeys/HotkeyBackend.h"
#include "hotkeys/none/NullHotkeyBackend.h"

std::unique_ptr<HotkeyBackend> createHotkeyBackend(const QString&)
{
    return std::make_unique<NullHotkeyBackend>(
        QStringLiteral("Glowdeck knows no way to register them on this system"));
}
