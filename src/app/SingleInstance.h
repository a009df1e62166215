#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

#include <optional>

/// One Glowdeck per settings file in a user's session. The first start listens on a local socket named after
/// its settings file; a later start with the same file asks it to open its drop-down window and exits. A run
/// with another settings file (the demo has one of its own) is an instance of its own.
class SingleInstance final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SingleInstance)

public:
    enum class Claim
    {
        first,      ///< this start is the instance: it listens now
        handedOver, ///< the running instance opened its window; this start should end
        unanswered, ///< an instance holds the socket but did not answer
    };

    explicit SingleInstance(QString settingsFile, QObject* parent = nullptr);

    /// The socket's path: in the session's runtime folder (XDG_RUNTIME_DIR), named after the settings file's
    /// full path with its links resolved, so that a relative path, a symbolic link (to the file or to a
    /// folder above it, also before the file exists) and the file's own path all meet.
    static QString socketName(const QString& settingsFile);

    /// Hands over to a running instance, or becomes the one. A socket left behind by a run that died is
    /// removed. Waits at most about two seconds, only when an instance is there and does not answer.
    Claim claim();

Q_SIGNALS:
    /// A later start asked for the drop-down window.
    void openRequested();

private:
    std::optional<Claim> handOver();
    void onConnection();

    QString m_name;
    QLocalServer m_server;
};
