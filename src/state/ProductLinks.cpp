#include "state/ProductLinks.h"

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
    links.help = ::fromEnvironment("GLOWDECK_HELP_URL", QStringLiteral("https://glowdeck.app/help/"));
    links.feedback =
        ::fromEnvironment("GLOWDECK_FEEDBACK_URL", QStringLiteral("https://glowdeck.app/feedback/"));
    links.review = ::fromEnvironment("GLOWDECK_REVIEW_URL", QStringLiteral("https://glowdeck.app/review/"));
    links.donation =
        ::fromEnvironment("GLOWDECK_DONATION_URL", QStringLiteral("https://glowdeck.app/coffee/"));
    links.errorEndpoint =
        ::fromEnvironment("GLOWDECK_ERROR_ENDPOINT", QStringLiteral("https://glowdeck.app/crash/"));
    return links;
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
