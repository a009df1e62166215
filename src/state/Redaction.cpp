#include "state/Redaction.h"

#include <QRegularExpression>
#include <QUrl>

namespace {

// Bridges hand out 40 characters today; the oldest firmware let an application choose a user name of 10 to
// 40. The words of the bridge's interface after "/api/" ("config", "nouser") are shorter and stay readable.
// The debug report script (data/scripts/send_debug.rb) uses the same pattern.
const QRegularExpression keyInPath(QStringLiteral("/api/[A-Za-z0-9_-]{8,}"));

} // namespace

QString redacted(const QString& text, const QString& storedKey)
{
    QString result = text;
    if (!storedKey.isEmpty()) {
        result.replace(storedKey, redactionMark);
        const QString encoded = QString::fromLatin1(QUrl::toPercentEncoding(storedKey));
        if (encoded != storedKey)
            result.replace(encoded, redactionMark);
    }
    return result.replace(keyInPath, QStringLiteral("/api/") + redactionMark);
}
