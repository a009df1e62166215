#include "i18n/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace Translations {

bool install(const QLocale& locale)
{
    QCoreApplication* application = QCoreApplication::instance();
    if (!application)
        return false;
    // The translator belongs to the application: it lives exactly as long as the texts can be asked for.
    auto load = [application](const QString& name, const QString& folder, const QLocale& language) {
        auto* translator = new QTranslator(application);
        if (translator->load(language, name, QStringLiteral("_"), folder) &&
            QCoreApplication::installTranslator(translator))
            return true;
        delete translator;
        return false;
    };
    load(QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath), locale);
    if (load(QStringLiteral("glowdeck"), QStringLiteral(":/i18n"), locale))
        return true;
    // A language Glowdeck does not speak gets English, with English plural forms ("1 bridge found.") rather
    // than the source texts' ("1 bridges found.").
    load(QStringLiteral("glowdeck"), QStringLiteral(":/i18n"), QLocale(QLocale::English));
    return false;
}

} // namespace Translations
