#pragma once

#include "login/LoginItem.h"

#include <QStringList>

/// Start at login on the free desktops (GNOME, KDE, Xfce, LXQt...): a desktop entry named "<id>.desktop" in
/// "$XDG_CONFIG_HOME/autostart". The entry counts as enabled when the first one found, looking in the user's
/// folder and then in the system's ($XDG_CONFIG_DIRS), exists and is neither hidden nor switched off by
/// GNOME's "X-GNOME-Autostart-enabled=false".
class XdgAutostartEntry final : public LoginItem
{
public:
    /// `configHome` is the user's configuration folder, `configDirs` the system's, in order of importance.
    /// `executable` is the running program: when "<its folder>/../share/applications/<id>.desktop" exists
    /// (an installed program), the entry is a copy of that one, its Exec pointed at `executable`; otherwise
    /// it starts `executable` itself, followed by `arguments`.
    XdgAutostartEntry(QString applicationId, QString configHome, QStringList configDirs, QString executable,
                      QStringList arguments = {});

    /// The user's configuration folder ($XDG_CONFIG_HOME when it is an absolute path, else ~/.config) and
    /// the system's ($XDG_CONFIG_DIRS, else /etc/xdg), as the XDG base directory rules define them.
    static QString userConfigHome();
    static QStringList systemConfigDirs();

    /// "<configHome>/autostart/<id>.desktop": the file this class writes.
    QString entryPath() const;

    bool isEnabled() const override;
    bool setEnabled(bool enabled) override;

    /// The Exec value that starts `program` with no arguments, quoted and escaped as desktop entries require;
    /// empty for a path no entry can hold (one with a line break).
    static QString execValue(const QString& program);
    /// The TryExec value for `program`: its path, escaped as a string value.
    static QString tryExecValue(const QString& program);

private:
    QString entryText() const;
    /// The entry that wins: the user's if present, else the first system one. Empty when there is none.
    QString effectiveEntry() const;
    bool systemEntryExists() const;

    QString m_applicationId;
    QString m_configHome;
    QStringList m_configDirs;
    QString m_executable;
    QStringList m_arguments;
};
