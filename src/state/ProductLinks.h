#pragma once

#include <QString>
#include <QUrl>

/// Addresses of the product's web pages and services. Each can be replaced through an environment variable,
/// so that tests and the demo point them at loopback or switch them off (an empty value switches a service
/// off).
struct ProductLinks
{
    QUrl website;       ///< GLOWDECK_WEBSITE_URL
    QUrl help;          ///< GLOWDECK_HELP_URL
    QUrl feedback;      ///< GLOWDECK_FEEDBACK_URL
    QUrl review;        ///< GLOWDECK_REVIEW_URL: the store's write-a-review page
    QUrl donation;      ///< GLOWDECK_DONATION_URL
    QUrl errorEndpoint; ///< GLOWDECK_ERROR_ENDPOINT: where diagnostics are posted ("/crash/")

    /// The built-in addresses, each replaced by its environment variable when that is set.
    static ProductLinks fromEnvironment();

    /// The information page shown inside the application: "<website>/app_view/?ac=<context>&v=<version>".
    QUrl informationPage(const QString& context, const QString& version) const;
};
