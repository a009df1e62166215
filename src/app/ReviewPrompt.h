#pragma once

#include <QString>

class AppSettings;
class SettingsStore;

/// Decides, each time the user opens the drop-down window with a plain click, whether its title bar offers
/// the review banner: first at the 27th opening, gone after the 42nd, never again once the user followed it.
class ReviewPrompt final
{
public:
    static inline const QString appInvocationsKey = QStringLiteral("appInvocations");
    /// Written by the banner's button.
    static inline const QString noMoreReviewRequestsKey = QStringLiteral("noMoreReviewRequests");

    ReviewPrompt(SettingsStore& store, AppSettings& settings);

    /// Counts the opening and shows or hides the banner in `AppSettings::showReviewRequest`.
    void onWindowOpened();

private:
    SettingsStore& m_store;
    AppSettings& m_settings;
};
