#pragma once

class AppSettings;

/// Decides, each time the user opens the drop-down window with a plain click, whether its title bar offers
/// the review banner: first at the 27th opening, gone after the 42nd, never again once the user followed it.
class ReviewPrompt final
{
public:
    explicit ReviewPrompt(AppSettings& settings);

    /// Counts the opening and shows or hides the banner in `AppSettings::showReviewRequest`.
    void onWindowOpened();

private:
    AppSettings& m_settings;
};
