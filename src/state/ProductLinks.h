#pragma once

#include <QString>
#include <QUrl>

/// Addresses of the product's web pages and services. Each can be replaced through an environment variable,
/// so that tests and the demo point them at loopback or switch them off (an empty value switches a service
/// off). The error-collection, help and feedback addresses are build options, empty unless the builder
/// chose one: no report leaves the machine, and Help and Feedback open the user guide installed with the
/// program.
struct ProductLinks
{
    QUrl website;       ///< GLOWDECK_WEBSITE_URL
    QUrl help;          ///< GLOWDECK_HELP_URL; without one, the user guide
    QUrl feedback;      ///< GLOWDECK_FEEDBACK_URL; without one, the guide's "Reporting a problem" section
    QUrl review;        ///< GLOWDECK_REVIEW_URL: the store's write-a-review page
    QUrl donation;      ///< GLOWDECK_DONATION_URL
    QUrl errorEndpoint; ///< GLOWDECK_ERROR_ENDPOINT: where diagnostics are posted ("/crash/"); empty: nowhere

    /// The built-in addresses, each replaced by its environment variable when that is set.
    static ProductLinks fromEnvironment();

    /// The user guide shipped with the program (data/guide/index.html) at `section` (an anchor, or the top);
    /// empty when the guide is not installed.
    static QUrl guide(const QString& section = QString());

    /// The information page shown inside the application: "<website>/app_view/?ac=<context>&v=<version>".
    QUrl informationPage(const QString& context, const QString& version) const;
};
