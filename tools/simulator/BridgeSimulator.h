#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QJsonObject>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

class SimulatedApi;
class SimulatedHome;
class SimulatedSchedules;
class SimulatorHttpConnection;
class SimulatorHttpServer;
struct SimulatorHttpRequest;

/// One request as the simulator received it.
struct SimulatedRequest
{
    QByteArray method; ///< "GET", "PUT", "POST", "DELETE"
    QString path;      ///< e.g. "/api/KEY/lights/3/state" (no query), percent-decoded
    QByteArray rawBody;
    QJsonObject body;  ///< rawBody parsed when it is a JSON object, else empty
    QByteArray target; ///< the request target as sent, still percent-encoded, query included
};
Q_DECLARE_METATYPE(SimulatedRequest)

/// A Philips Hue bridge as seen through its version-1 REST interface (/api/...), served over HTTP on a
/// loopback port: pairing with the link button, lights, groups, scenes, config and one-shot timers, state
/// changes that show up in the next read, plus recording of every request and injected faults for tests.
/// Everything runs on the thread that owns it; nothing blocks.
class BridgeSimulator final : public QObject
{
    Q_OBJECT
public:
    /// Starts with the default home loaded (twelve lights, rooms, a zone, scenes) and no users.
    explicit BridgeSimulator(QObject* parent = nullptr);
    ~BridgeSimulator() override;

    /// Starts serving. Port 0 picks a free port. Returns false, with errorString(), on failure.
    bool listen(const QHostAddress& address = QHostAddress::LocalHost, quint16 port = 0);
    /// Stops serving and drops open connections.
    void close();
    /// Whether listen() succeeded and close() was not called since.
    bool isListening() const;
    /// The port listened on, 0 when not listening.
    quint16 port() const;
    /// "127.0.0.1:54321": what an application stores as the bridge address.
    QString hostAndPort() const;
    /// Why the last listen() failed.
    QString errorString() const { return m_errorString; }

    // Home

    /// Replaces lights, groups, scenes and config with the built-in home. Users are kept.
    void loadDefaultHome();
    /// Loads a home file (see saveHome()). A bad file leaves the current home untouched and says why in
    /// @p error. Users listed in the file are added to the current ones.
    bool loadHome(const QString& fileName, QString* error = nullptr);
    /// Writes the home as one JSON object {"lights","groups","scenes","config","users"}, ids in home order.
    bool saveHome(const QString& fileName, QString* error = nullptr) const;
    /// No lights, groups, scenes or schedules any more; users are kept.
    void clearHome();
    /// Replaces the "lights", "groups" or "scenes" list with @p body: an object of id -> resource is kept in
    /// its document order; any other text (for fault tests) is served verbatim.
    void setRawResource(const QString& resource, const QByteArray& body);
    /// The current light object (with "state"), or an empty object.
    QJsonObject light(const QString& id) const;
    /// The current group object (with "state" and "action"); "0" is the group of all lights.
    QJsonObject group(const QString& id) const;
    /// The current scene object (with "lightstates").
    QJsonObject scene(const QString& id) const;
    /// Light ids in served order.
    QStringList lightIds() const;
    /// Group ids in served order (without "0").
    QStringList groupIds() const;
    /// Scene ids in served order.
    QStringList sceneIds() const;
    /// Marks a light (un)reachable, as when its power is switched off at the wall. False: no such light.
    bool setLightReachable(const QString& id, bool reachable);

    // Users and pairing

    /// Registers a new user (as a successful pairing would) and returns its name.
    QString addUser(const QString& deviceType = QStringLiteral("test#sim"));
    /// Registers the user @p userName (handy for demos and tests with fixed names). False when the name is
    /// empty, longer than 64 characters or holds a '/'.
    bool registerUser(const QString& userName, const QString& deviceType = QStringLiteral("test#sim"));
    /// Forgets a user, as DELETE /config/whitelist/<name> does. False when there is no such user.
    bool removeUser(const QString& userName);
    /// Registered user names, oldest first.
    QStringList users() const;
    /// The link button counts as pressed for the next 30 s, like on a real bridge. A loopback client presses
    /// it too, at any time, with "POST /__control/linkbutton" (not recorded, never delayed or faulted).
    void pressLinkButton();
    /// When set, every POST /api succeeds without the link button.
    void setAcceptPairingAtOnce(bool accept);
    bool linkButtonPressed() const;

    // Recording

    /// Every request received, oldest first (commands of firing timers are not requests and not recorded).
    QList<SimulatedRequest> requests() const;
    void clearRequests();
    /// Whether requests are kept for requests() (on by default; a long-running demo turns it off).
    /// requestReceived() is emitted either way.
    void setRecording(bool record);

    // Fault injection (each applies to every following request until cleared)

    /// Delays every answer (and every dropped connection) by @p milliseconds; 0 answers at once.
    void setLatency(int milliseconds);
    int latency() const { return m_latency; }
    enum class Fault
    {
        None,
        DropConnection, ///< close the TCP connection without an answer
        GarbageBody,    ///< status 200 with a body that is not JSON
        ErrorArray,     ///< [{"error":{"type":901,...}}] instead of the real answer
        HttpError,      ///< status 500 with a short text body, as a failing web server answers
        DripFeed,       ///< the real answer, its body trickled out a few bytes at a time (setDripFeed())
    };
    Q_ENUM(Fault)
    /// @p times -1: until setFault(Fault::None); N: the next N requests only. @p method, when given ("PUT"),
    /// limits the fault to requests with that method; the others are answered normally and not counted.
    /// Requests hit by a fault do not change the home, except under DripFeed, whose answer is the real one.
    /// Note that both Qt's network access manager and the program's own send a request again once when a
    /// reused keep-alive connection is dropped, so their callers only see a drop that lasts at least two
    /// requests.
    void setFault(Fault fault, int times = -1, const QByteArray& method = {});
    Fault fault() const { return m_fault; }
    /// How DripFeed trickles: @p bytes at once, then a pause of @p intervalMs (4 bytes every 3 s by default,
    /// slow enough to be useless, fast enough to keep a time-out without data from firing).
    void setDripFeed(int bytes, int intervalMs);

signals:
    /// A request was received (and recorded); emitted before it is answered.
    void requestReceived(const SimulatedRequest& request);
    /// Lights, groups, scenes, schedules or users changed, through a request, a timer or the C++ interface.
    void homeChanged();
    /// A control request ("POST /__control/linkbutton") pressed the link button.
    void linkButtonPressedByRequest();

private:
    void onHttpRequest(SimulatorHttpConnection* connection, const SimulatorHttpRequest& request);
    void onScheduleDue(const QByteArray& method, const QString& address, const QJsonObject& body);
    /// Answers a request below "/__control/": the simulator's own controls, not part of the bridge.
    void answerControlRequest(SimulatorHttpConnection* connection, const SimulatorHttpRequest& request);

    Fault takeFault(const QByteArray& method);

    std::unique_ptr<SimulatedHome> m_home;
    SimulatedSchedules* m_schedules = nullptr;
    SimulatorHttpServer* m_server = nullptr;
    std::unique_ptr<SimulatedApi> m_api;
    QList<SimulatedRequest> m_requests;
    bool m_recording = true;
    int m_latency = 0;
    Fault m_fault = Fault::None;
    int m_faultTimes = -1;
    QByteArray m_faultMethod;
    int m_dripBytes = 4;
    int m_dripIntervalMs = 3000;
    QString m_errorString;
};
