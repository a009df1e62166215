#include "bridge/BridgeUrl.h"

#include "model/BridgeAddress.h"

namespace {

bool isSegment(const QString& text)
{
    return !text.isEmpty() && text != u"." && text != u"..";
}

/// `path` below the bridge's base, then `segments`.
QUrl urlOnBridge(const QString& bridgeIP, QString path, const QStringList& segments)
{
    const std::optional<BridgeAddress> address = BridgeAddress::parse(bridgeIP);
    if (!address || address->scheme.isEmpty())
        return {};
    QUrl url(address->base(address->scheme), QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        return {};
    for (const QString& segment : segments) {
        if (!isSegment(segment))
            return {};
        path += u'/' + QString::fromLatin1(QUrl::toPercentEncoding(segment));
    }
    url.setPath(path, QUrl::StrictMode);
    return url.isValid() ? url : QUrl();
}

} // namespace

QUrl bridgeResourceUrl(const QString& bridgeIP, const QString& apiKey, const QStringList& segments)
{
    if (!isSegment(apiKey))
        return {};
    return urlOnBridge(
        bridgeIP, QStringLiteral("/api/") + QString::fromLatin1(QUrl::toPercentEncoding(apiKey)), segments);
}

QUrl bridgePublicUrl(const QString& bridgeIP, const QStringList& segments)
{
    return urlOnBridge(bridgeIP, QStringLiteral("/api"), segments);
}

QUrl bridgeClipUrl(const QString& bridgeIP, const QStringList& segments)
{
    return urlOnBridge(bridgeIP, QStringLiteral("/clip/v2/resource"), segments);
}

QUrl bridgeEventStreamUrl(const QString& bridgeIP)
{
    return urlOnBridge(bridgeIP, QStringLiteral("/eventstream/clip/v2"), {});
}

QString bridgeResourcePath(const QUrl& url)
{
    // Split while still encoded: a key or id holding an encoded '/' is one segment.
    QString path = url.path(QUrl::FullyEncoded);
    if (path.startsWith(QStringLiteral("/api/"))) {
        const qsizetype afterKey = path.indexOf(u'/', 5);
        path = afterKey < 0 ? QString() : path.mid(afterKey);
    } else if (path.startsWith(QStringLiteral("/clip/v2/resource/"))) {
        path = path.mid(17);
    }
    return QUrl::fromPercentEncoding(path.toLatin1());
}
