#include "CtlCommon.h"

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

QString printable(QString text)
{
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control)
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

QString counted(qsizetype count, const QString& noun)
{
    return QString::number(count) + u' ' + noun + (count == 1 ? QString() : QStringLiteral("s"));
}

} // namespace Ctl
