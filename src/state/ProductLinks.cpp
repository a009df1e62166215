#include "state/ProductLinks.h"

#include "BuiltInLinks.h"
#include "state/DataFiles.h"

#include <QUrlQuery>

namespace {

QUrl fromEnvironment(const char* variable, const QString& builtIn)
{
    if (qEnvironmentVariableIsSet(variable))
        return QUrl(qEnvironmentVariable(variable));
    return QUrl(builtIn);
}

} // namespace

ProductLinks ProductLinks::fromEnvironment()
{
    ProductLinks links;
    links.website = ::fromEnvironment("GLOWDECK_WEBSITE_URL", QStringLiteral("https://glowdeck.app/"));
    links.help = ::fromEnvironment("GLOWDECK_HELP_URL", QStringLiteral(GLOWDECK_BUILT_IN_HELP_URL));
    if (links.help.isEmpty())
        links.help = guide();
    links.feedback =
        ::fromEnvironment("GLOWDECK_FEEDBACK_URL", QStringLiteral(GLOWDECK_BUILT_IN_FEEDBACK_URL));
    if (links.feedback.isEmpty())
        links.feedback = guide(QStringLiteral("reporting-a-problem"));
    links.review = ::fromEnvironment("GLOWDECK_REVIEW_URL", QStringLiteral("https://glowdeck.app/review/"));
    links.donation =
        ::fromEnvironment("GLOWDECK_DONATION_URL", QStringLiteral("https://glowdeck.app/coffee/"));
    links.errorEndpoint =
        ::fromEnvironment("GLOWDECK_ERROR_ENDPOINT", QStringLiteral(GLOWDECK_BUILT_IN_ERROR_ENDPOINT));
    return links;
}

QUrl ProductLinks::guide(const QString& section)
{
    const QString file = dataFilePath(QStringLiteral("guide/index.html"));
    if (file.isEmpty())
        return {};
    QUrl url = QUrl::fromLocalFile(file);
    if (!section.isEmpty())
        url.setFragment(section);
    return url;
}

QUrl ProductLinks::informationPage(const QString& context, const QString& version) const
{
    if (website.isEmpty())
        return {};
    QUrl page = website.resolved(QUrl(QStringLiteral("/app_view/")));
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("ac"), context);
    query.addQueryItem(QStringLiteral("v"), version);
    page.setQuery(query);
    return page;
}
