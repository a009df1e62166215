#include "hotkeys/none/NullHotkeyBackend.h"

#include <QTimer>

NullHotkeyBackend::NullHotkeyBackend(QString reason, QObject* parent)
    : HotkeyBackend(parent), m_reason(std::move(reason))
{
    if (!m_reason.isEmpty())
        QTimer::singleShot(0, this, [this] { Q_EMIT unavailable(m_reason); });
}

bool NullHotkeyBackend::registerHotKey(quint32, const GlobalHotkeys::Shortcut&, const QString&)
{
    return false;
}

void NullHotkeyBackend::unregisterHotKey(quint32) {}
