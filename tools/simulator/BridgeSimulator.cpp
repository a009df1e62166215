#include "BridgeSimulator.h"

#include "SimulatedApi.h"
#include "SimulatedClipApi.h"
#include "SimulatedEventStream.h"
#include "SimulatedHome.h"
#include "SimulatedResources.h"
#include "SimulatedSchedules.h"
#include "SimulatorHttpConnection.h"
#include "SimulatorHttpServer.h"
#include "SimulatorJson.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>
#include <QSslConfiguration>
#include <QTimer>

#include <algorithm>

namespace {

constexpr qint64 MaximumHomeFileBytes = 64 * 1024 * 1024;
const QByteArray JsonType = QByteArrayLiteral("application/json");
const QString ControlPrefix = QStringLiteral("/__control/");
const QString ExternalControl = QStringLiteral("/__control/external/");
const QString EventStreamPath = QStringLiteral("/eventstream/clip/v2");

/// "127.0.0.1:54321" for a server listening there; loopback for one listening on every interface.
QString reachableAt(QHostAddress address, quint16 port)
{
    if (address == QHostAddress(QHostAddress::Any) || address == QHostAddress(QHostAddress::AnyIPv4))
        address = QHostAddress(QHostAddress::LocalHost);
    else if (address == QHostAddress(QHostAddress::AnyIPv6))
        address = QHostAddress(QHostAddress::LocalHostIPv6);
    const QString host = address.protocol() == QAbstractSocket::IPv6Protocol
                             ? QLatin1Char('[') + address.toString() + QLatin1Char(']')
                             : address.toString();
    return host + QLatin1Char(':') + QString::number(port);
}

} // namespace

BridgeSimulator::BridgeSimulator(QObject* parent) : BridgeSimulator(Floor::Ground, parent) {}

BridgeSimulator::BridgeSimulator(Floor floor, QObject* parent)
    : QObject(parent), m_home(std::make_unique<SimulatedHome>(floor)),
      m_schedules(new SimulatedSchedules(this)), m_server(new SimulatorHttpServer(false, this)),
      m_api(std::make_unique<SimulatedApi>(*m_home, *m_schedules)),
      m_clip(std::make_unique<SimulatedClipApi>(*m_home)), m_events(new SimulatedEventStream(*m_home, this))
{
    m_clock.start();
    connect(this, &BridgeSimulator::homeChanged, m_events, &SimulatedEventStream::homeChanged);
    connect(m_server, &SimulatorHttpServer::requestReady, this, &BridgeSimulator::onHttpRequest);
    connect(m_schedules, &SimulatedSchedules::commandDue, this, &BridgeSimulator::onScheduleDue);
}

bool BridgeSimulator::makeCertificates()
{
    // Made once, when first needed: a key or two and certificates, a few milliseconds.
    if (m_authority.isNull())
        m_authority = SimulatorCertificates::makeAuthority(QStringLiteral("Glowdeck test bridge authority"));
    if (m_strangerAuthority.isNull())
        m_strangerAuthority =
            SimulatorCertificates::makeAuthority(QStringLiteral("Somebody else's authority"));
    if (m_leafKey.isNull())
        m_leafKey = SimulatorCertificates::makeKey();
    if (m_selfSignedKey.isNull())
        m_selfSignedKey = SimulatorCertificates::makeKey();
    return !m_authority.isNull() && !m_strangerAuthority.isNull() && !m_leafKey.isNull() &&
           !m_selfSignedKey.isNull();
}

SimulatorIdentity BridgeSimulator::authority()
{
    makeCertificates();
    return m_authority;
}

void BridgeSimulator::setAuthority(const SimulatorIdentity& authority)
{
    if (authority.isNull())
        return;
    m_authority = authority;
    presentCertificate();
}

bool BridgeSimulator::listenTls(const QHostAddress& address, quint16 port)
{
    if (!m_tlsServer) {
        if (!makeCertificates()) {
            m_errorString = QStringLiteral("cannot make the certificates (OpenSSL)");
            return false;
        }
        m_tlsServer = new SimulatorHttpServer(true, this);
        connect(m_tlsServer, &SimulatorHttpServer::requestReady, this, &BridgeSimulator::onHttpRequest);
        presentCertificate();
    }
    if (!m_tlsServer->listen(address, port)) {
        m_errorString = m_tlsServer->errorString();
        return false;
    }
    m_errorString.clear();
    return true;
}

quint16 BridgeSimulator::tlsPort() const
{
    return m_tlsServer && m_tlsServer->isListening() ? m_tlsServer->port() : 0;
}

QString BridgeSimulator::tlsHostAndPort() const
{
    return reachableAt(m_tlsServer ? m_tlsServer->address() : QHostAddress(), tlsPort());
}

bool BridgeSimulator::writeAuthority(const QString& fileName, QString* error) const
{
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(m_authority.certificate.toPem()) >= 0 && file.flush() &&
        file.commit())
        return true;
    if (error)
        *error = QStringLiteral("Cannot write %1: %2").arg(fileName, file.errorString());
    return false;
}

QString BridgeSimulator::bridgeId() const
{
    return m_home->bridgeId();
}

void BridgeSimulator::setBridgeId(const QString& id)
{
    m_home->setBridgeId(id);
    // Every resource id follows the bridge id: no event could tell a client about that.
    m_events->rebase();
    presentCertificate();
}

void BridgeSimulator::setCertificate(CertificateKind kind)
{
    m_certificateKind = kind;
    presentCertificate();
}

void BridgeSimulator::renewSelfSignedKey()
{
    m_selfSignedKey = SimulatorCertificates::makeKey();
    presentCertificate();
}

void BridgeSimulator::setRedirectHttpToHttps(bool redirect)
{
    m_redirectHttp = redirect;
}

void BridgeSimulator::presentCertificate()
{
    if (!m_tlsServer)
        return;
    namespace Make = SimulatorCertificates;
    const QString id = bridgeId();
    QSslKey key = m_leafKey;
    QSslCertificate certificate;
    switch (m_certificateKind) {
    case CertificateKind::Signed:
        certificate = Make::makeLeaf(id, key, &m_authority);
        break;
    case CertificateKind::SelfSigned:
        key = m_selfSignedKey;
        certificate = Make::makeLeaf(id, key, nullptr);
        break;
    case CertificateKind::OtherBridge:
        certificate = Make::makeLeaf(QStringLiteral("001788FFFE000BAD"), key, &m_authority);
        break;
    case CertificateKind::Expired:
        certificate = Make::makeLeaf(id, key, &m_authority, -730, -1);
        break;
    case CertificateKind::UnknownAuthority:
        certificate = Make::makeLeaf(id, key, &m_strangerAuthority);
        break;
    }
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(certificate);
    configuration.setPrivateKey(key);
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone); // a bridge asks nothing of its clients
    m_tlsServer->setSslConfiguration(configuration);
    // A kept-alive connection would go on with the old certificate.
    m_tlsServer->dropConnections();
}

BridgeSimulator::~BridgeSimulator()
{
    // Connections and timers go first, while the home they would work on still exists.
    m_server->close();
    if (m_tlsServer)
        m_tlsServer->close();
    m_schedules->clear();
}

bool BridgeSimulator::listen(const QHostAddress& address, quint16 port)
{
    if (!m_server->listen(address, port)) {
        m_errorString = m_server->errorString();
        return false;
    }
    m_errorString.clear();
    const QHostAddress bound = m_server->address();
    if (bound.protocol() == QAbstractSocket::IPv4Protocol && bound != QHostAddress(QHostAddress::AnyIPv4))
        m_home->setIpAddress(bound.toString());
    return true;
}

void BridgeSimulator::close()
{
    m_server->close();
    if (m_tlsServer)
        m_tlsServer->close();
}

bool BridgeSimulator::isListening() const
{
    return m_server->isListening();
}

quint16 BridgeSimulator::port() const
{
    return m_server->isListening() ? m_server->port() : 0;
}

QString BridgeSimulator::hostAndPort() const
{
    return reachableAt(m_server->address(), port());
}

void BridgeSimulator::loadDefaultHome()
{
    m_schedules->clear();
    m_home->loadDefault();
    emit homeChanged();
}

bool BridgeSimulator::loadHome(const QString& fileName, QString* error)
{
    QFile file(fileName);
    QString reason;
    if (!file.open(QIODevice::ReadOnly)) {
        reason = file.errorString();
    } else if (file.size() > MaximumHomeFileBytes) {
        reason = QStringLiteral("the file is larger than %1 MiB").arg(MaximumHomeFileBytes / (1024 * 1024));
    } else if (m_home->load(file.readAll(), &reason)) {
        m_schedules->clear();
        emit homeChanged();
        return true;
    }
    if (error)
        *error = QStringLiteral("Cannot load home file %1: %2").arg(fileName, reason);
    return false;
}

bool BridgeSimulator::saveHome(const QString& fileName, QString* error) const
{
    QByteArray text;
    QString reason;
    if (m_home->save(&text, &reason)) {
        QSaveFile file(fileName);
        if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush() &&
            file.commit())
            return true;
        reason = file.errorString();
    }
    if (error)
        *error = QStringLiteral("Cannot save home file %1: %2").arg(fileName, reason);
    return false;
}

void BridgeSimulator::clearHome()
{
    m_schedules->clear();
    m_home->clear();
    emit homeChanged();
}

void BridgeSimulator::setRawResource(const QString& resource, const QByteArray& body)
{
    if (!m_home->setRaw(resource, body)) {
        qWarning("BridgeSimulator::setRawResource: \"%s\" is not one of lights, groups, scenes",
                 qPrintable(resource));
        return;
    }
    emit homeChanged();
}

QJsonObject BridgeSimulator::light(const QString& id) const
{
    return m_home->light(id);
}

QJsonObject BridgeSimulator::group(const QString& id) const
{
    return m_home->group(id);
}

QJsonObject BridgeSimulator::scene(const QString& id) const
{
    return m_home->scene(id);
}

QStringList BridgeSimulator::lightIds() const
{
    return m_home->lightIds();
}

QStringList BridgeSimulator::groupIds() const
{
    return m_home->groupIds();
}

QStringList BridgeSimulator::scheduleIds() const
{
    return m_schedules->ids();
}

QJsonObject BridgeSimulator::schedule(const QString& id) const
{
    return m_schedules->schedule(id);
}

QString BridgeSimulator::addSchedule(const QJsonObject& body)
{
    const QJsonArray answer = m_schedules->create(body);
    const QString id = answer.first().toObject().value(u"success").toObject().value(u"id").toString();
    if (!id.isEmpty())
        emit homeChanged();
    return id;
}

bool BridgeSimulator::fireSchedule(const QString& id)
{
    return m_schedules->fire(id);
}

QStringList BridgeSimulator::sceneIds() const
{
    return m_home->sceneIds();
}

bool BridgeSimulator::setLightReachable(const QString& id, bool reachable)
{
    if (!m_home->setLightReachable(id, reachable))
        return false;
    emit homeChanged();
    return true;
}

QString BridgeSimulator::addUser(const QString& deviceType)
{
    const QString name = m_api->newUserName();
    registerUser(name, deviceType);
    return name;
}

bool BridgeSimulator::registerUser(const QString& userName, const QString& deviceType)
{
    if (userName.isEmpty() || userName.size() > 64 || userName.contains(QLatin1Char('/')))
        return false;
    m_home->addUser(userName, deviceType);
    emit homeChanged();
    return true;
}

bool BridgeSimulator::removeUser(const QString& userName)
{
    if (!m_home->removeUser(userName))
        return false;
    emit homeChanged();
    return true;
}

QStringList BridgeSimulator::users() const
{
    QStringList names;
    for (const SimulatedHome::User& user : m_home->users())
        names.append(user.name);
    return names;
}

void BridgeSimulator::pressLinkButton()
{
    m_api->pressLinkButton();
}

void BridgeSimulator::setAcceptPairingAtOnce(bool accept)
{
    m_api->setAcceptPairingAtOnce(accept);
}

bool BridgeSimulator::linkButtonPressed() const
{
    return m_api->linkButtonPressed();
}

QList<SimulatedRequest> BridgeSimulator::requests() const
{
    return m_requests;
}

void BridgeSimulator::clearRequests()
{
    m_requests.clear();
}

void BridgeSimulator::setRecording(bool record)
{
    m_recording = record;
}

void BridgeSimulator::setLatency(int milliseconds)
{
    m_latency = std::max(0, milliseconds);
}

void BridgeSimulator::setFault(Fault fault, int times, const QByteArray& method)
{
    m_fault = times == 0 ? Fault::None : fault;
    m_faultTimes = m_fault == Fault::None ? -1 : times;
    m_faultMethod = method.toUpper();
}

void BridgeSimulator::setFaultLatency(int milliseconds)
{
    m_faultLatency = std::max(0, milliseconds);
}

void BridgeSimulator::setDripFeed(int bytes, int intervalMs)
{
    m_dripBytes = std::max(1, bytes);
    m_dripIntervalMs = std::max(1, intervalMs);
}

void BridgeSimulator::setEventStreamMode(EventStreamMode mode)
{
    m_eventStreamMode = mode;
    m_events->setContent(mode == EventStreamMode::Silent      ? SimulatedEventStream::Content::Nothing
                         : mode == EventStreamMode::Malformed ? SimulatedEventStream::Content::Malformed
                                                              : SimulatedEventStream::Content::Events);
    if (mode == EventStreamMode::Off)
        m_events->endAll();
}

void BridgeSimulator::setEventStreamLifetime(int seconds)
{
    m_events->setLifetime(std::clamp(seconds, 0, 24 * 3600) * 1000);
}

void BridgeSimulator::setEventStreamKeepAliveInterval(int milliseconds)
{
    m_events->setKeepAliveInterval(milliseconds);
}

void BridgeSimulator::setEventMergeInterval(int milliseconds)
{
    m_events->setMergeInterval(milliseconds);
}

int BridgeSimulator::eventStreamListeners() const
{
    return m_events->listeners();
}

void BridgeSimulator::dropEventStreams()
{
    m_events->dropAll();
}

void BridgeSimulator::setV2Busy(int status, int milliseconds, bool fromNextWrite)
{
    m_clip->setBusy(status, milliseconds, fromNextWrite ? -1 : m_clock.elapsed());
}

void BridgeSimulator::setV2PartialSuccess(bool partial)
{
    m_clip->setPartialSuccess(partial);
}

void BridgeSimulator::setV2WriteError(int status, const QString& description, int times, const QString& id)
{
    m_clip->setWriteError(status, description, times, id);
}

void BridgeSimulator::setV2PaceEnforced(bool enforced)
{
    m_clip->setPaceEnforced(enforced);
}

QString BridgeSimulator::v2Id(const QString& type, const QString& address) const
{
    return SimulatedResources::resourceId(bridgeId(), type, address).toString(QUuid::WithoutBraces);
}

void BridgeSimulator::setBusyAfterChange(int milliseconds)
{
    m_busySpell = std::max(milliseconds, 0);
    m_busyUntilMs = -1;
}

BridgeSimulator::Fault BridgeSimulator::takeFault(const QByteArray& method)
{
    if (!m_faultMethod.isEmpty() && method != m_faultMethod)
        return Fault::None;
    const Fault fault = m_fault;
    if (fault != Fault::None && m_faultTimes > 0 && --m_faultTimes == 0)
        m_fault = Fault::None;
    return fault;
}

void BridgeSimulator::onHttpRequest(SimulatorHttpConnection* connection, const SimulatorHttpRequest& http)
{
    if (http.path.startsWith(ControlPrefix))
        return answerControlRequest(connection, http);
    const qint64 now = m_clock.elapsed();
    SimulatedRequest request{http.method, http.path, http.body, {}, http.target, http.encrypted, now};
    SimulatedApi::parseObject(http.body, &request.body);
    if (m_recording)
        m_requests.append(request);
    emit requestReceived(request);

    if (m_redirectHttp && !http.encrypted && tlsPort() != 0) {
        // The newest bridge: plain HTTP is only ever sent on to HTTPS, on the host the client named.
        QByteArray host = http.headers.value("host");
        const qsizetype colon = host.lastIndexOf(':');
        if (colon > host.lastIndexOf(']'))
            host.truncate(colon);
        if (host.isEmpty())
            host = "127.0.0.1";
        connection->respondWithHeaders(
            301, "text/html", "<html><body>Moved</body></html>",
            {{"Location", "https://" + host + ':' + QByteArray::number(tlsPort()) + http.target}});
        return;
    }

    // A bridge busy with someone else's changes refuses further ones for a while, and still answers reads.
    const bool change = http.method == "PUT" || http.method == "POST" || http.method == "DELETE";
    if (change && m_busySpell > 0) {
        if (m_busyUntilMs < 0) {
            m_busyUntilMs = now + m_busySpell;
        } else if (now < m_busyUntilMs) {
            connection->respond(429, "text/plain", QByteArrayLiteral("Too Many Requests\n"));
            return;
        }
    }

    // A bridge answers changes of rooms above its budget with 429, and changes nothing.
    const bool groupChange = http.method == "PUT" && http.path.endsWith(QLatin1String("/action")) &&
                             http.path.contains(QLatin1String("/groups/"));
    if (groupChange && m_roomChangeSpacing > 0) {
        if (m_lastGroupChangeMs >= 0 && now - m_lastGroupChangeMs < m_roomChangeSpacing) {
            connection->respond(429, "text/plain", QByteArrayLiteral("Too Many Requests\n"));
            return;
        }
        m_lastGroupChangeMs = now;
    }

    // Only HTTPS has the stream; elsewhere (and when it is off) the path is as unknown as any other.
    const bool eventStream = http.encrypted && m_eventStreamMode != EventStreamMode::Off &&
                             http.method == "GET" && http.path == EventStreamPath;
    const Fault fault = takeFault(http.method);
    SimulatedApi::Answer answer;
    QByteArray contentType = JsonType;
    switch (fault) {
    case Fault::None:
    case Fault::DripFeed:
        if (SimulatedClipApi::isClipPath(http.path)) {
            if (http.encrypted && m_v2Enabled) {
                answer = m_clip->handle(http.method, http.path, http.headers.value("hue-application-key"),
                                        http.body, now);
                if (answer.changed)
                    emit homeChanged();
            } else {
                // Plain HTTP and old firmware know nothing of the path: their web server's own 404.
                answer = {404, QByteArrayLiteral("<html><body>404 Not Found</body></html>")};
                contentType = QByteArrayLiteral("text/html");
            }
            break;
        }
        if (eventStream) {
            if (!m_home->hasUser(QString::fromUtf8(http.headers.value("hue-application-key")))) {
                answer.status = 403;
                answer.body = R"({"errors":[{"description":"unauthorized user"}],"data":[]})";
            }
            break;
        }
        answer = m_api->handle(http.method, http.path, http.body);
        if (answer.changed)
            emit homeChanged();
        break;
    case Fault::HttpError:
        answer.status = 500;
        answer.body = QByteArrayLiteral("Internal Server Error\n");
        contentType = QByteArrayLiteral("text/plain");
        break;
    case Fault::TooManyRequests:
    case Fault::ServiceUnavailable:
        answer.status = fault == Fault::TooManyRequests ? 429 : 503;
        answer.body = fault == Fault::TooManyRequests ? QByteArrayLiteral("Too Many Requests\n")
                                                      : QByteArrayLiteral("Service Unavailable\n");
        contentType = QByteArrayLiteral("text/plain");
        break;
    case Fault::GarbageBody:
        answer.body = QByteArrayLiteral("<html>garbage");
        break;
    case Fault::ErrorArray:
        answer.body =
            SimulatorJson::errorAnswer(901, QStringLiteral("/"), QStringLiteral("Internal error, 404"));
        break;
    case Fault::DropConnection:
        break;
    }

    const bool openStream = eventStream && answer.status == 200 && answer.body.isEmpty() &&
                            (fault == Fault::None || fault == Fault::DripFeed);
    auto deliver = [this, connection, fault, answer, contentType, openStream] {
        if (openStream)
            m_events->open(connection);
        else if (fault == Fault::DropConnection)
            connection->abortConnection();
        else if (fault == Fault::DripFeed)
            connection->respondDripping(answer.status, contentType, answer.body, m_dripBytes,
                                        m_dripIntervalMs);
        else
            connection->respond(answer.status, contentType, answer.body);
    };
    // The connection is the timer's context: a client that hangs up meanwhile simply gets nothing.
    const int delay = m_latency + (fault == Fault::None ? 0 : m_faultLatency);
    if (delay > 0)
        QTimer::singleShot(delay, Qt::PreciseTimer, connection, deliver);
    else
        deliver();
}

void BridgeSimulator::answerControlRequest(SimulatorHttpConnection* connection,
                                           const SimulatorHttpRequest& http)
{
    // Anyone who can reach the port of a simulator bound to a public address must not control it.
    if (!http.peer.isLoopback()) {
        connection->respond(403, JsonType, R"({"error":"control requests are taken from loopback only"})");
        return;
    }
    const bool external = http.path.startsWith(ExternalControl);
    if (!external && http.path != ControlPrefix + QStringLiteral("linkbutton")) {
        connection->respond(
            404, JsonType,
            R"({"error":"no such control; there are /__control/linkbutton and /__control/external/<path>"})");
        return;
    }
    if (http.method != "POST") {
        connection->respond(405, JsonType,
                            external ? R"({"error":"send another application's change with POST"})"
                                     : R"({"error":"press the link button with POST"})");
        return;
    }
    if (external) {
        // Another application's change: what it asks is what a PUT of a registered user would do.
        const SimulatedApi::Answer answer =
            m_api->handleForAnyUser("PUT", http.path.mid(ExternalControl.size() - 1), http.body);
        if (answer.changed)
            emit homeChanged();
        connection->respond(answer.status, JsonType, answer.body);
        return;
    }
    pressLinkButton();
    emit linkButtonPressedByRequest();
    connection->respond(200, JsonType, R"({"linkbutton":true})");
}

void BridgeSimulator::onScheduleDue(const QByteArray& method, const QString& address, const QJsonObject& body)
{
    m_api->handle(method, address, QJsonDocument(body).toJson(QJsonDocument::Compact));
    emit homeChanged(); // at least the schedule itself went away or was disabled
}
