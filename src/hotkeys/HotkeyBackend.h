#pragma once

#include "hotkeys/GlobalHotkeys.h"

#include <QObject>
#include <QString>

#include <memory>

/// The desktop's service for system-wide shortcuts: X11 key grabs, the desktop portal on Wayland, Carbon hot
/// keys on macOS, RegisterHotKey on Windows. GlobalHotkeys is its only user; tests pass a fake one and emit
/// its signals themselves.
class HotkeyBackend : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HotkeyBackend)

public:
    using QObject::QObject;

    /// Takes the combination for the whole desktop under `id`; `description` says what it does, for desktops
    /// that list it. False when it cannot be had (another program holds it, the keyboard has no such key):
    /// the shortcut then simply does not work.
    virtual bool registerHotKey(quint32 id, const GlobalHotkeys::Shortcut& shortcut,
                                const QString& description) = 0;
    virtual void unregisterHotKey(quint32 id) = 0;

    /// False once it is known that this desktop offers no way to register global shortcuts.
    virtual bool isAvailable() const { return true; }
    /// Whether another program already holds the combination, where the desktop can tell.
    virtual bool isTakenBySystem(const GlobalHotkeys::Shortcut&) const { return false; }

Q_SIGNALS:
    void pressed(quint32 id);
    void released(quint32 id);
    /// Sent once, when it turns out that this desktop offers no way to register global shortcuts.
    void unavailable(const QString& reason);
};

/// The back-end for the desktop the application runs on, chosen at run time where there is a choice (X11 key
/// grabs when Qt runs on xcb, else the desktop portal). `applicationId` names the application to desktops
/// that ask. Implemented once per platform, in glowdeck_hotkeys_desktop.
std::unique_ptr<HotkeyBackend> createHotkeyBackend(const QString& applicationId);
