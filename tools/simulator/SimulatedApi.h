#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QJsonObject>
#include <QString>
#include <QStringList>

class SimulatedHome;
class SimulatedSchedules;

/// The routes of the bridge's version-1 REST interface: turns a method, path and body into the answer a
/// bridge gives (errors as [{"error":..}] with HTTP 200, like a bridge), changing the home on the way. Also
/// holds the pairing rules (link button, accept at once).
class SimulatedApi final
{
public:
    /// What to send back.
    struct Answer
    {
        int status = 200;
        QByteArray body;
        bool changed = false; ///< the home, its users or its schedules changed
    };

    /// Works on @p home and @p schedules, which must outlive it.
    explicit SimulatedApi(SimulatedHome& home, SimulatedSchedules& schedules);

    /// Answers one request; @p path like "/api/<user>/lights/1/state".
    Answer handle(const QByteArray& method, const QString& path, const QByteArray& rawBody);

    /// Answers @p method on @p address ("/lights/3/state") as the bridge answers any registered user: how
    /// another application's changes are made.
    Answer handleForAnyUser(const QByteArray& method, const QString& address, const QByteArray& rawBody);

    /// The link button counts as pressed for the next 30 s.
    void pressLinkButton();
    void setAcceptPairingAtOnce(bool accept);
    bool linkButtonPressed() const;
    /// A fresh 40-character user name, as a bridge hands out.
    QString newUserName() const;

    /// @p rawBody as a JSON object; false when it is not one.
    static bool parseObject(const QByteArray& rawBody, QJsonObject* object);

private:
    Answer pair(const QByteArray& rawBody);
    Answer userRequest(const QByteArray& method, const QStringList& rest, const QByteArray& rawBody);
    QByteArray fullState() const;

    SimulatedHome& m_home;
    SimulatedSchedules& m_schedules;
    QElapsedTimer m_linkButtonPressed;
    bool m_acceptPairingAtOnce = false;
};
