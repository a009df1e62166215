#include "bridge/BridgeUrl.h"

namespace {

bool isSegment(const QString& text)
{
    return !text.isEmpty() && text != u"." && text != u"..";
}

} // namespace

QUrl bridgeResourceUrl(const QString& bridgeIP, const QString& apiKey, const QStringList& segments)
{
    QUrl url(QStringLiteral("http://") + bridgeIP, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty() || !url.path().isEmpty() || url.hasQuery() ||
        url.hasFragment() || !url.userInfo().isEmpty() || !isSegment(apiKey))
        return {};
    QString path = QStringLiteral("/api/") + QString::fromLatin1(QUrl::toPercentEncoding(apiKey));
    for (const QString& segment : segments) {
        if (!isSegment(segment))
            return {};
        path += u'/' + QString::fromLatin1(QUrl::toPercentEncoding(segment));
    }
    url.setPath(path, QUrl::StrictMode);
    return url.isValid() ? url : QUrl();
}

QString bridgeResourcePath(const QUrl& url)
{
    // Split while still encoded: a key or id holding an encoded '/' is one segment.
    QString path = url.path(QUrl::FullyEncoded);
    if (path.startsWith(QStringLiteral("/api/"))) {
        const qsizetype afterKey = path.indexOf(u'/', 5);
        path = afterKey < 0 ? QString() : path.mid(afterKey);
    }
    return QUrl::fromPercentEncoding(path.toLatin1());
}
