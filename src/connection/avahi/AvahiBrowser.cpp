#include "connection/avahi/AvahiBrowser.h"

#include "state/Console.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QHostAddress>

namespace {

const QString serverInterface = QStringLiteral("org.freedesktop.Avahi.Server");
const QString browserInterface = QStringLiteral("org.freedesktop.Avahi.ServiceBrowser");
const QString bridgeServiceType = QStringLiteral("_hue._tcp");

// Avahi's "any interface" and "any protocol", and IPv4 for the addresses asked of the resolver.
constexpr int anyInterface = -1;
constexpr int anyProtocol = -1;
constexpr int ipv4 = 0;

/// The value of "bridgeid=…" among a TXT record's strings, upper case; empty when there is none.
QString bridgeIdOf(const QVariant& txt)
{
    const QDBusArgument strings = txt.value<QDBusArgument>();
    if (strings.currentType() != QDBusArgument::ArrayType)
        return {};
    QString bridgeId;
    strings.beginArray();
    while (!strings.atEnd()) {
        QByteArray entry;
        strings >> entry;
        if (entry.toLower().startsWith("bridgeid="))
            bridgeId = QString::fromLatin1(entry.mid(9)).toUpper();
    }
    strings.endArray();
    return bridgeId;
}

} // namespace

QString AvahiBrowser::defaultServiceName()
{
    if (qEnvironmentVariableIsSet("GLOWDECK_MDNS_SERVICE"))
        return qEnvironmentVariable("GLOWDECK_MDNS_SERVICE");
    return QStringLiteral("org.freedesktop.Avahi");
}

AvahiBrowser::AvahiBrowser(QDBusConnection bus, QString serviceName, QObject* parent)
    : QObject(parent), m_bus(std::move(bus)), m_service(std::move(serviceName))
{
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, [this] { finish(); });
}

AvahiBrowser::~AvahiBrowser()
{
    watchBrowser(false);
}

void AvahiBrowser::browse(std::chrono::milliseconds limit, std::function<void(QList<Found>)> done)
{
    if (m_done)
        finish();
    ++m_browse;
    m_done = std::move(done);
    m_found.clear();
    m_resolving = 0;
    m_allForNow = false;
    if (m_service.isEmpty() || !m_bus.isConnected()) {
        if (!m_service.isEmpty())
            printLine(QStringLiteral("Local network discovery: no system bus; skipped."));
        QMetaObject::invokeMethod(
            this, [this] { finish(); }, Qt::QueuedConnection);
        return;
    }
    m_limit.start(limit);
    // Prepared, watched, then started: no announcement can arrive before its signal is connected.
    QDBusMessage prepare = QDBusMessage::createMethodCall(m_service, QStringLiteral("/"), serverInterface,
                                                          QStringLiteral("ServiceBrowserPrepare"));
    prepare << anyInterface << anyProtocol << bridgeServiceType << QString() << 0U;
    auto* call = new QDBusPendingCallWatcher(m_bus.asyncCall(prepare), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [this, browse = m_browse](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                if (browse == m_browse && m_done)
                    onBrowserCreated(w->reply());
            });
}

void AvahiBrowser::onBrowserCreated(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        // The usual case on a desktop without Avahi: the name has no owner and nothing can start it.
        printLine(
            QStringLiteral("Local network discovery: %1 did not answer (%2); skipped.")
                .arg(m_service, reply.errorMessage().isEmpty() ? reply.errorName() : reply.errorMessage()));
        return finish();
    }
    m_browserPath = reply.arguments().first().value<QDBusObjectPath>().path();
    watchBrowser(true);
    m_bus.asyncCall(
        QDBusMessage::createMethodCall(m_service, m_browserPath, browserInterface, QStringLiteral("Start")));
}

void AvahiBrowser::onItemNew(int interface, int protocol, const QString& name, const QString& type,
                             const QString& domain, uint)
{
    if (!m_done)
        return;
    ++m_resolving;
    QDBusMessage resolve = QDBusMessage::createMethodCall(m_service, QStringLiteral("/"), serverInterface,
                                                          QStringLiteral("ResolveService"));
    resolve << interface << protocol << name << type << domain << ipv4 << 0U;
    auto* call = new QDBusPendingCallWatcher(m_bus.asyncCall(resolve), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [this, browse = m_browse](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                onResolved(browse, w->reply());
            });
}

void AvahiBrowser::onResolved(quint64 browse, const QDBusMessage& reply)
{
    if (browse != m_browse || !m_done)
        return;
    --m_resolving;
    const QList<QVariant> fields = reply.arguments();
    // (interface, protocol, name, type, domain, host, address protocol, address, port, txt, flags)
    const QHostAddress address(fields.value(7).toString());
    if (reply.type() == QDBusMessage::ReplyMessage && fields.size() >= 10 &&
        address.protocol() == QAbstractSocket::IPv4Protocol) {
        m_found.append({address.toString(), quint16(fields.at(8).toUInt()), bridgeIdOf(fields.at(9))});
    } else {
        printLine(
            QStringLiteral("Local network discovery: a bridge's announcement could not be resolved (%1).")
                .arg(reply.errorMessage().isEmpty() ? QStringLiteral("no IPv4 address")
                                                    : reply.errorMessage()));
    }
    if (m_allForNow && m_resolving == 0)
        finish();
}

void AvahiBrowser::onAllForNow()
{
    // Everything already known has been announced: once it is resolved there is nothing more to wait for.
    m_allForNow = true;
    if (m_done && m_resolving == 0)
        finish();
}

void AvahiBrowser::onFailure(const QString& error)
{
    printLine(QStringLiteral("Local network discovery failed: ") + error);
    if (m_done && m_resolving == 0)
        finish();
}

void AvahiBrowser::finish()
{
    m_limit.stop();
    ++m_browse; // answers still on their way belong to nobody now
    watchBrowser(false);
    if (!m_browserPath.isEmpty()) {
        m_bus.asyncCall(QDBusMessage::createMethodCall(m_service, m_browserPath, browserInterface,
                                                       QStringLiteral("Free")));
        m_browserPath.clear();
    }
    if (auto done = std::exchange(m_done, {}))
        done(std::exchange(m_found, {}));
}

void AvahiBrowser::watchBrowser(bool watch)
{
    if (m_browserPath.isEmpty())
        return;
    const auto each = [&](const char* signal, const char* slot) {
        if (watch)
            m_bus.connect(m_service, m_browserPath, browserInterface, QString::fromLatin1(signal), this,
                          slot);
        else
            m_bus.disconnect(m_service, m_browserPath, browserInterface, QString::fromLatin1(signal), this,
                             slot);
    };
    each("ItemNew", SLOT(onItemNew(int, int, QString, QString, QString, uint)));
    each("AllForNow", SLOT(onAllForNow()));
    each("Failure", SLOT(onFailure(QString)));
}

std::unique_ptr<LocalNetworkBrowser> createLocalNetworkBrowser()
{
    return std::make_unique<AvahiBrowser>();
}
