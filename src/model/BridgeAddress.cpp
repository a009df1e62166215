#include "model/BridgeAddress.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QRegularExpression>

namespace {

bool isHostName(const QString& host)
{
    // Letters, digits, dots and dashes, as DNS and mDNS names are; one trailing dot is a fully qualified
    // name.
    static const QRegularExpression name(QStringLiteral(
        "^(?=.{1,253}\\.?$)([A-Za-z0-9]([A-Za-z0-9-]{0,61}[A-Za-z0-9])?)(\\.[A-Za-z0-9]([A-Za-z0-9-]{0,61}"
        "[A-Za-z0-9])?)*\\.?$"));
    return name.match(host).hasMatch();
}

std::optional<BridgeAddress> refuse(QString* problem, const QString& why)
{
    if (problem)
        *problem = why;
    return std::nullopt;
}

} // namespace

std::optional<BridgeAddress> BridgeAddress::parse(const QString& text, QString* problem)
{
    BridgeAddress address;
    QString rest = text.trimmed();
    if (rest.isEmpty())
        return refuse(problem, QCoreApplication::translate("BridgeAddress", "The bridge address is empty."));
    for (const QString& scheme : {https, http}) {
        const QString prefix = scheme + QStringLiteral("://");
        if (rest.startsWith(prefix, Qt::CaseInsensitive)) {
            address.scheme = scheme;
            rest = rest.mid(prefix.size());
            break;
        }
    }
    // One trailing slash is what a browser's address bar adds; anything after it would be a path.
    if (!address.scheme.isEmpty() && rest.endsWith(u'/'))
        rest.chop(1);
    if (rest.contains(QRegularExpression(QStringLiteral("[/?#@\\\\\\s]"))) ||
        rest.contains(QStringLiteral("://")))
        return refuse(problem,
                      QCoreApplication::translate(
                          "BridgeAddress", "A bridge address is HOST, HOST:PORT, https://HOST[:PORT] or "
                                           "http://HOST[:PORT], without a path: %1 is not one.")
                          .arg(text.trimmed()));

    QString portText;
    if (rest.startsWith(u'[')) {
        const qsizetype close = rest.indexOf(u']');
        if (close < 0)
            return refuse(problem, QCoreApplication::translate(
                                       "BridgeAddress", "The IPv6 address in %1 has no closing bracket.")
                                       .arg(text));
        address.host = rest.mid(1, close - 1);
        const QString after = rest.mid(close + 1);
        if (!after.isEmpty() && !after.startsWith(u':'))
            return refuse(problem, QCoreApplication::translate("BridgeAddress",
                                                               "%1 has something after the IPv6 address.")
                                       .arg(text));
        portText = after.mid(1);
        if (after.startsWith(u':') && portText.isEmpty())
            return refuse(
                problem,
                QCoreApplication::translate("BridgeAddress", "%1 ends in ':' without a port.").arg(text));
        if (QHostAddress(address.host).protocol() != QAbstractSocket::IPv6Protocol)
            return refuse(
                problem,
                QCoreApplication::translate("BridgeAddress", "%1 is not an IPv6 address.").arg(address.host));
    } else {
        const qsizetype colon = rest.indexOf(u':');
        if (colon >= 0 && rest.indexOf(u':', colon + 1) >= 0)
            return refuse(problem, QCoreApplication::translate("BridgeAddress",
                                                               "An IPv6 address goes in brackets: [%1].")
                                       .arg(rest));
        address.host = colon < 0 ? rest : rest.left(colon);
        if (colon >= 0) {
            portText = rest.mid(colon + 1);
            if (portText.isEmpty())
                return refuse(
                    problem,
                    QCoreApplication::translate("BridgeAddress", "%1 ends in ':' without a port.").arg(text));
        }
        if (!isHostName(address.host))
            return refuse(problem,
                          QCoreApplication::translate("BridgeAddress", "%1 is not a host name or address.")
                              .arg(address.host));
    }
    if (!portText.isEmpty()) {
        bool ok = false;
        const int port = portText.toInt(&ok);
        if (!ok || port < 1 || port > 65535 || !portText.front().isDigit())
            return refuse(
                problem,
                QCoreApplication::translate("BridgeAddress", "%1 is not a port (1 to 65535).").arg(portText));
        address.port = port;
    }
    return address;
}

QString BridgeAddress::base(const QString& transport) const
{
    const QString& chosen = scheme.isEmpty() ? transport : scheme;
    return chosen + QStringLiteral("://") + hostAndPort();
}

QString BridgeAddress::hostAndPort() const
{
    const QString name = host.contains(u':') ? u'[' + host + u']' : host;
    return port < 0 ? name : name + u':' + QString::number(port);
}
