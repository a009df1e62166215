#pragma once

#include "SimulatedDefaultHome.h"
#include "SimulatorCertificates.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QJsonObject>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QSslCertificate>
#include <QSslKey>
#include <QString>
#include <QStringList>

#include <memory>

class SimulatedApi;
class SimulatedClipApi;
class SimulatedEventStream;
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
    QJsonObject body;        ///< rawBody parsed when it is a JSON object, else empty
    QByteArray target;       ///< the request target as sent, still percent-encoded, query included
    bool encrypted = false;  ///< it came over HTTPS
    qint64 receivedAtMs = 0; ///< when it arrived, on a monotonic clock in milliseconds
};
Q_DECLARE_METATYPE(SimulatedRequest)

/// A Philips Hue bridge as seen through its version-1 REST interface (/api/...), served over HTTP on a
/// loopback port, and its version-2 interface (/clip/v2/...) over HTTPS: pairing with the link button,
/// lights, groups, scenes, config and one-shot timers, state changes that show up in the next read of
/// either interface and in the event stream, plus recording of every request and injected faults for tests.
/// Everything runs on the thread that owns it; nothing blocks. Simulators share nothing: several in one
/// process (or in several) are as many bridges, each with its own home, users, timers, event stream and
/// authority (unless told to share one, setAuthority()).
class BridgeSimulator final : public QObject
{
    Q_OBJECT
public:
    /// A built-in home; a house with two bridges has one on each floor (see SimulatedDefaultHome).
    using Floor = SimulatedDefaultHome::Floor;

    /// Starts with the default home loaded (twelve lights, rooms, a zone, scenes) and no users.
    explicit BridgeSimulator(QObject* parent = nullptr);
    /// Starts with the built-in home of @p floor, whose config names a bridge id of its own, and no users:
    /// BridgeSimulator(Floor::Upper) is a second bridge beside a default one.
    explicit BridgeSimulator(Floor floor, QObject* parent = nullptr);
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
    /// "http://127.0.0.1:54321", the address of the plain-HTTP port.
    QString httpAddress() const { return QStringLiteral("http://") + hostAndPort(); }

    // HTTPS, as a bridge serves it: a certificate for its bridge id, signed by an authority of its own that
    // clients must be told to trust (authorityCertificate()), made fresh for every simulator.

    /// Serves the same interface over HTTPS as well. Port 0 picks a free port. False, with errorString().
    bool listenTls(const QHostAddress& address = QHostAddress::LocalHost, quint16 port = 0);
    /// The HTTPS port, 0 when not listening.
    quint16 tlsPort() const;
    /// "127.0.0.1:54321" of the HTTPS port, and "https://127.0.0.1:54321".
    QString tlsHostAndPort() const;
    QString httpsAddress() const { return QStringLiteral("https://") + tlsHostAndPort(); }
    /// The authority that signs the simulator's certificates: what a client trusts to trust this bridge.
    /// Null until listenTls() or authority().
    QSslCertificate authorityCertificate() const { return m_authority.certificate; }
    /// The authority with its key, made now if it was not yet; null when OpenSSL cannot make one.
    SimulatorIdentity authority();
    /// Signs this bridge's certificates with @p authority (another simulator's authority()) from now on, as
    /// one maker signs every bridge: a client then trusts one authority for all of them. A null one is
    /// ignored.
    void setAuthority(const SimulatorIdentity& authority);
    bool writeAuthority(const QString& fileName, QString* error = nullptr) const;
    /// The config's "bridgeid" (upper case), which the certificate names; changing it changes the
    /// certificate.
    QString bridgeId() const;
    void setBridgeId(const QString& id);

    /// Which certificate HTTPS clients are shown, as real bridges (and impostors) show them.
    enum class CertificateKind
    {
        Signed,           ///< the bridge's own, signed by the authority (current firmware)
        SelfSigned,       ///< the bridge's own, signed by itself (old firmware); same key until renewed
        OtherBridge,      ///< signed by the authority, but for another bridge id
        Expired,          ///< the bridge's own, signed, but no longer valid
        UnknownAuthority, ///< the bridge's own subject, signed by an authority nobody trusts
    };
    Q_ENUM(CertificateKind)
    /// Applies to new connections; open ones are dropped.
    void setCertificate(CertificateKind kind);
    CertificateKind certificateKind() const { return m_certificateKind; }
    /// A new key for the self-signed certificate, as a reset bridge with old firmware would make.
    void renewSelfSignedKey();
    /// Plain HTTP answers every request (but the loopback controls) with 301 to the same target over HTTPS,
    /// as the newest bridge does. Such requests are still recorded.
    void setRedirectHttpToHttps(bool redirect);

    // Home

    /// Replaces lights, groups, scenes and config with the built-in home of its floor. Users and the bridge
    /// id are kept.
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
    /// The schedules' ids, oldest first.
    QStringList scheduleIds() const;
    QJsonObject schedule(const QString& id) const;
    /// Makes a schedule as "POST /schedules" with @p body would (another app's timer, one left from an
    /// earlier run); the new id, or empty when a bridge would refuse the body.
    QString addSchedule(const QJsonObject& body);
    /// Carries out a timer's command now, as if its time had come (autodelete removes it). False: no such
    /// schedule.
    bool fireSchedule(const QString& id);
    /// Marks a light (un)reachable, as when its power is switched off at the wall. False: no such light.
    bool setLightReachable(const QString& id, bool reachable);

    // The event stream: "GET /eventstream/clip/v2" over HTTPS with the header "hue-application-key: <user>",
    // as a bridge with current firmware serves it (plain HTTP answers 404, an unknown key 403). It greets
    // with ": hi", sends a keep-alive comment every 10 s, and an event for every change of lights, groups
    // and scenes, whoever made it: "data: [{"creationtime","id","type":"update"|"add"|"delete","data":[..]}]"
    // with one container per changed resource (light, zigbee_connectivity, grouped_light, room, zone,
    // scene), each naming its "id_v1". The request is recorded, and latency and faults apply to it as to
    // any request. Another application's change is made with "POST /__control/external/<v1 address>" from
    // loopback: its JSON body is applied as a PUT of any user would be, and answered the same way (not
    // recorded, never delayed or faulted).

    enum class EventStreamMode
    {
        Normal,    ///< every change, as a bridge sends it
        Silent,    ///< greeting and keep-alives only, as a stream that missed everything
        Off,       ///< no stream: 404, as from a bridge with old firmware; ends the open streams
        Malformed, ///< something broken (cut JSON, HTML, wrong types) in place of each event; goes on after
    };
    Q_ENUM(EventStreamMode)
    void setEventStreamMode(EventStreamMode mode);
    EventStreamMode eventStreamMode() const { return m_eventStreamMode; }
    /// Every stream opened from now on ends (properly, as a bridge ends them) after @p seconds; 0: never.
    void setEventStreamLifetime(int seconds);
    /// How often a keep-alive comment goes out, 10 000 ms by default.
    void setEventStreamKeepAliveInterval(int milliseconds);
    /// How long changes are collected for one event. 0 (the default): until the next turn of the event loop,
    /// so one request makes one event; a real bridge collects for about 1000 ms.
    void setEventMergeInterval(int milliseconds);
    /// How many streams are open.
    int eventStreamListeners() const;
    /// Closes every open stream at once, without an end, as a bridge that restarts.
    void dropEventStreams();

    // The version-2 interface ("/clip/v2/resource/..."): served over HTTPS only, with the header
    // "hue-application-key: <user>", from the same home as version 1 (a change through one shows through
    // the other and in the event stream). See SimulatedClipApi and SimulatedResources for what it holds.
    // Requests are recorded, and latency and faults apply to them as to any request.

    /// Off: every "/clip/v2" path answers 404, as on a bridge with old firmware. On by default.
    void setV2Enabled(bool enabled) { m_v2Enabled = enabled; }
    bool isV2Enabled() const { return m_v2Enabled; }
    /// Answers version-2 writes with @p status (429 or 503) for @p milliseconds from now (or, with
    /// @p fromNextWrite, from the next write on, which is taken); reads are answered all along. 0 ends it.
    void setV2Busy(int status, int milliseconds, bool fromNextWrite = false);
    /// A grouped light written while some of its lamps cannot be reached answers 207 Multi-Status, changes
    /// the lamps it can reach and names the others in "errors".
    void setV2PartialSuccess(bool partial);
    /// The next @p times version-2 writes (-1: all; 0 ends it) of resource @p id (empty: of any) are
    /// answered @p status with the error @p description, and change nothing.
    void setV2WriteError(int status, const QString& description, int times = 1, const QString& id = {});
    /// Enforces the bridge's pace over version 2: a light takes a write every 100 ms, a grouped light one
    /// a second; sooner ones are answered 429 and change nothing.
    void setV2PaceEnforced(bool enforced);
    /// The version-2 id of the resource of @p type standing for the version-1 @p address ("/lights/3").
    QString v2Id(const QString& type, const QString& address) const;

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
        DropConnection,     ///< close the TCP connection without an answer
        GarbageBody,        ///< status 200 with a body that is not JSON
        ErrorArray,         ///< [{"error":{"type":901,...}}] instead of the real answer
        HttpError,          ///< status 500 with a short text body, as a failing web server answers
        DripFeed,           ///< the real answer, its body trickled out a few bytes at a time (setDripFeed())
        TooManyRequests,    ///< status 429, as a bridge over its budget answers
        ServiceUnavailable, ///< status 503, as a bridge answers while it is busy starting or updating
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
    /// Holds back the answers hit by a fault @p milliseconds longer than the others (a refusal that comes
    /// late, after answers to later requests); 0 by default.
    void setFaultLatency(int milliseconds);
    /// As a bridge over its budget: a change of a room (PUT /groups/N/action) that comes sooner than
    /// @p milliseconds after the last one it took is answered 429 Too Many Requests; 0 takes them all.
    void setRoomChangeSpacing(int milliseconds) { m_roomChangeSpacing = milliseconds; }
    /// As a bridge kept busy by another application's changes: the next change it receives (PUT, POST or
    /// DELETE) is taken as usual and starts a spell of @p milliseconds in which every further change is
    /// answered 429 Too Many Requests and changes nothing, while reads are answered all along; after the
    /// spell changes are taken again. Each call arms one spell; 0 (the default) ends a spell or disarms it.
    void setBusyAfterChange(int milliseconds);
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
    SimulatorHttpServer* m_tlsServer = nullptr;
    std::unique_ptr<SimulatedApi> m_api;
    std::unique_ptr<SimulatedClipApi> m_clip;
    bool m_v2Enabled = true;
    SimulatedEventStream* m_events = nullptr;
    EventStreamMode m_eventStreamMode = EventStreamMode::Normal;
    QList<SimulatedRequest> m_requests;
    bool m_recording = true;
    int m_latency = 0;
    Fault m_fault = Fault::None;
    QElapsedTimer m_clock;
    int m_roomChangeSpacing = 0;
    qint64 m_lastGroupChangeMs = -1;
    int m_busySpell = 0;       // armed when positive
    qint64 m_busyUntilMs = -1; // the end of the running spell; -1 until the change that starts it
    int m_faultTimes = -1;
    int m_faultLatency = 0;
    QByteArray m_faultMethod;
    int m_dripBytes = 4;
    int m_dripIntervalMs = 3000;
    QString m_errorString;
    void presentCertificate();
    /// Makes the authorities and keys once; false when OpenSSL cannot.
    bool makeCertificates();
    SimulatorIdentity m_authority;
    SimulatorIdentity m_strangerAuthority;
    QSslKey m_leafKey;
    QSslKey m_selfSignedKey;
    CertificateKind m_certificateKind = CertificateKind::Signed;
    bool m_redirectHttp = false;
};
