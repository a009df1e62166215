#include "state/DataFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

QString dataFilePath(const QString& relativePath)
{
    QStringList folders;
    if (!qEnvironmentVariableIsEmpty("GLOWDECK_DATA_DIR"))
        folders << qEnvironmentVariable("GLOWDECK_DATA_DIR");
    // Without an application object there is no program path to go by.
    if (QCoreApplication::instance())
        folders << QCoreApplication::applicationDirPath() + QStringLiteral("/../share/glowdeck");
    // A program run from the build tree reads the source tree's files, even when a package is installed too.
    folders << QStringLiteral(GLOWDECK_SOURCE_DATA_DIR) << QStringLiteral(GLOWDECK_INSTALLED_DATA_DIR);

    for (const QString& folder : folders) {
        const QFileInfo file(QDir(folder).filePath(relativePath));
        if (file.isFile())
            return file.canonicalFilePath();
    }
    return QString();
}
