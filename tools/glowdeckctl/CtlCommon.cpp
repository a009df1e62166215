#include "CtlCommon.h"

#include "bridge/BridgeNetwork.h"
#include "state/JsonSettingsStore.h"

namespace Ctl {

void write(std::FILE* stream, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

void printError(const QString& line)
{
    write(stderr, QStringLiteral("glowdeckctl: ") + line + u'\n');
}

namespace {

/// Characters that change how a terminal shows what follows them: C0 and C1 controls (escape sequences,
/// bells, carriage returns), the bidirectional embeddings, overrides, isolates and marks that can make a name
/// read backwards or hide text, and the line and paragraph separators.
bool changesTheTerminal(char16_t c)
{
    return QChar(c).category() == QChar::Other_Control || c == 0x061C || c == 0x200E || c == 0x200F ||
           (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0x2028 || c == 0x2029;
}

} // namespace

QString printable(QString text)
{
    for (QChar& c : text) {
        if (changesTheTerminal(c.unicode()))
            c = u'?';
    }
    return text;
}

QString settingsFileName(const CtlInvocation& invocation)
{
    if (!invocation.settingsFile.isEmpty())
        return invocation.settingsFile;
    if (QString file = qEnvironmentVariable("GLOWDECK_SETTINGS"); !file.isEmpty())
        return file;
    return JsonSettingsStore::defaultFileName();
}

std::unique_ptr<BridgeNetwork> makeNetwork(const CtlInvocation& invocation)
{
    auto network = std::make_unique<BridgeNetwork>();
    QStringList files = invocation.trustRoots;
    if (QString file = qEnvironmentVariable("GLOWDECK_BRIDGE_TRUST_ROOTS"); !file.isEmpty())
        files.prepend(file);
    for (const QString& file : files) {
        QString problem;
        const QList<QSslCertificate> roots = BridgeNetwork::readRoots(file, &problem);
        if (!problem.isEmpty()) {
            printError(Ctl::Text::tr("--trust-root: %1.").arg(problem));
            return nullptr;
        }
        // Said every time: an extra authority can vouch for any bridge, so it is never there unnoticed.
        for (const QSslCertificate& root : roots)
            printError(Ctl::Text::tr("also trusting %1 (%2) for the bridge's certificate.")
                           .arg(printable(root.subjectInfo(QSslCertificate::CommonName).value(0)), file));
        network->addTrustRoots(roots);
    }
    return network;
}

QString clause(const QString& sentence)
{
    QString text = sentence.trimmed();
    if (text.endsWith(u'.'))
        text.chop(1);
    if (text.size() > 1 && text.at(0).isUpper() && text.at(1).isLower())
        text[0] = text.at(0).toLower();
    return text;
}

QString seconds(std::chrono::milliseconds duration)
{
    return QString::number(duration.count() / 1000.0);
}

} // namespace Ctl
