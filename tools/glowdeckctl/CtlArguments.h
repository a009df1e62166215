#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// The exit statuses of glowdeckctl.
enum CtlExitStatus : int
{
    exitDone = 0,
    exitFailed = 1, ///< no bridge found, paired with or used; a change refused or unanswered; no lamp, room
                    ///< or scene with that id or name; no event stream to watch; the settings file not
                    ///< written
    exitUsage = 2,  ///< the command line was refused, or a change named a lamp, room or scene ambiguously (an
                    ///< id on several paired bridges without --bridge-id, a name several share); nothing was
                    ///< sent
};

/// The commands glowdeckctl knows; each has one entry in the command table of CtlArguments.cpp.
enum class CtlCommand
{
    lights,
    rooms,
    scenes,
    light,
    room,
    scene,
    allOn,
    allOff,
    discover,
    pair,
    status,
    watch,
    hotkeys
};

/// What the `light` and `room` commands change.
enum class CtlAction
{
    on,
    off,
    brightness,
    hue,
    ct,
    brighter,
    darker
};

/// One checked command line. Every value in it is in the bridge's range, so running it needs no more checks.
struct CtlInvocation
{
    CtlCommand command = CtlCommand::lights;
    QString targetId; ///< the lamp, room or scene; empty for the lists and all-off
    CtlAction action = CtlAction::on;
    qint64 value = 0;                      ///< the number after brightness, hue, ct, brighter or darker
    bool percent = false;                  ///< `value` is a brightness or step in per cent ("50%")
    std::optional<qint64> offAfterMinutes; ///< all-off --in
    std::optional<qint64> waitSeconds;     ///< pair --wait
    std::optional<QString> discoveryUrl;   ///< discover --discovery-url; empty switches the service off
    QString pick;     ///< discover and pair --pick: the id of the bridge found, upper case
    QString bridgeId; ///< --bridge-id: the paired bridge to use, upper case; empty: all
    bool json = false;
    bool direct = false;    ///< --direct: to the bridge, even when Glowdeck runs
    QString bridge;         ///< --bridge; empty: the stored address (pair stores it)
    QString key;            ///< --key; empty: the stored key
    QString settingsFile;   ///< --settings; empty: $GLOWDECK_SETTINGS, else the default file
    QStringList trustRoots; ///< --trust-root: files of authorities trusted for the bridge beside its maker's
};

/// Reads glowdeckctl's command line. It touches neither the network nor the settings file, so a command line
/// it refuses never costs a request.
class CtlArguments final
{
public:
    enum class Outcome
    {
        run,
        help,
        version,
        invalid
    };

    /// `arguments` as QCoreApplication::arguments() gives them, program name first.
    static CtlArguments parse(const QStringList& arguments);
    /// The help text, in lines of at most 80 columns.
    static QString usage();
    /// What a refused command line prints on standard error: the reason and where the help is.
    static QString refusal(const QString& error);
    /// Whether `text` is a plain HOST or HOST:PORT, fit to be put into request URLs as it is.
    static bool isBridgeAddress(const QString& text);

    Outcome outcome() const { return m_outcome; }
    /// Meaningful when outcome() is `run`.
    const CtlInvocation& invocation() const { return m_invocation; }
    /// Why the command line was refused, in one sentence; empty unless outcome() is `invalid`.
    const QString& error() const { return m_error; }

private:
    static CtlArguments refused(const QString& why);

    Outcome m_outcome = Outcome::invalid;
    CtlInvocation m_invocation;
    QString m_error;
};
