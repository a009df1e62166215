#pragma once

#include "hotkeys/HotkeyBackend.h"

/// For a desktop without a way to register global shortcuts: registers nothing and says so once, from the
/// event loop, so that whoever listens has connected by then.
class NullHotkeyBackend final : public HotkeyBackend
{
    Q_OBJECT

public:
    /// `reason` is what unavailable() will say; empty: stay silent and claim to be available (glowdeckctl and
    /// tests, which register nothing).
    explicit NullHotkeyBackend(QString reason = QString(), QObject* parent = nullptr);

    bool registerHotKey(quint32 id, const GlobalHotkeys::Shortcut& shortcut,
                        const QString& description) override;
    void unregisterHotKey(quint32 id) override;
    bool isAvailable() const override { return m_reason.isEmpty(); }

private:
    QString m_reason;
};
