#pragma once

#include "hotkeys/HotkeyBackend.h"

#include <QHash>
#include <QList>

/// A desktop's shortcut service for tests: keeps what is registered, refuses what `taken` holds, and presses
/// and releases a registered combination on request.
class FakeHotkeyBackend final : public HotkeyBackend
{
public:
    using Shortcut = GlobalHotkeys::Shortcut;

    /// Combinations another program holds: registering them fails and isTakenBySystem() says so.
    QList<Shortcut> taken;
    bool available = true;
    /// Every registration asked for, refused ones included, with its description.
    QList<std::pair<Shortcut, QString>> registrations;

    bool registerHotKey(quint32 id, const Shortcut& shortcut, const QString& description) override
    {
        registrations.append({shortcut, description});
        if (taken.contains(shortcut) || !available)
            return false;
        m_registered.insert(id, shortcut);
        return true;
    }
    void unregisterHotKey(quint32 id) override { m_registered.remove(id); }
    bool isAvailable() const override { return available; }
    bool isTakenBySystem(const Shortcut& shortcut) const override { return taken.contains(shortcut); }

    QList<Shortcut> registered() const { return m_registered.values(); }
    /// Presses and releases the combination, if it is registered; false otherwise.
    bool press(const Shortcut& shortcut)
    {
        const quint32 id = m_registered.key(shortcut, 0);
        if (id == 0)
            return false;
        Q_EMIT pressed(id);
        Q_EMIT released(id);
        return true;
    }

private:
    QHash<quint32, Shortcut> m_registered;
};
