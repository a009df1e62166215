#pragma once

#include "SimulatedApi.h"

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QString>

class SimulatedHome;

/// The routes of the bridge's version-2 interface ("/clip/v2/resource/..."): reads of the home as
/// SimulatedResources renders it, and changes of lights, grouped lights, scenes and smart scenes, which
/// are turned into the changes the version-1 interface makes, so that both show one home. Answers as a
/// bridge does: {"errors":[..],"data":[..]}, 403 without a known "hue-application-key", 400 for a bad body
/// or value, 404 for an unknown resource. Also holds the faults a test asks of this interface only.
class SimulatedClipApi final
{
public:
    using Answer = SimulatedApi::Answer;

    /// Works on @p home, which must outlive it.
    explicit SimulatedClipApi(SimulatedHome& home);

    /// Whether @p path belongs to this interface.
    static bool isClipPath(const QString& path);

    /// Answers one request of the application key @p key; @p nowMs on a monotonic clock.
    Answer handle(const QByteArray& method, const QString& path, const QByteArray& key,
                  const QByteArray& rawBody, qint64 nowMs);

    /// Writes are answered with @p status (429 or 503) and an error for @p milliseconds from @p nowMs, or,
    /// when @p nowMs is -1, from the next write on (that write is taken). 0 ms ends it.
    void setBusy(int status, int milliseconds, qint64 nowMs);
    /// A grouped light written while some of its lamps cannot be reached answers 207, changes the others and
    /// names each one it could not change.
    void setPartialSuccess(bool partial) { m_partialSuccess = partial; }
    /// The next @p times writes (-1: all) of the resource @p id (empty: any) are answered @p status with the
    /// error @p description and change nothing.
    void setWriteError(int status, const QString& description, int times, const QString& id);
    /// Enforces the bridge's pace: a light takes about 10 writes a second, a grouped light 1; more are
    /// answered 429.
    void setPaceEnforced(bool enforced) { m_paceEnforced = enforced; }

private:
    Answer read(const QStringList& rest) const;
    Answer write(const QString& type, const QString& id, const QByteArray& rawBody, qint64 nowMs);
    Answer writeLights(const QString& type, const QString& id, const QString& address,
                       const QJsonObject& body);
    Answer writeScene(const QString& address, const QJsonObject& body);
    Answer writeSmartScene(const QString& address, const QJsonObject& body);

    SimulatedHome& m_home;
    int m_busyStatus = 0;
    int m_busySpellMs = 0;
    qint64 m_busyUntilMs = -1;
    bool m_partialSuccess = false;
    int m_errorStatus = 0;
    int m_errorTimes = 0;
    QString m_errorDescription;
    QString m_errorId;
    bool m_paceEnforced = false;
    QHash<QString, qint64> m_lastWriteMs; // resource id -> when its last write was taken
};
