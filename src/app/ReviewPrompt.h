#pragma once

class Preferences;

/// Decides, each time the user opens the drop-down window with a plain click, whether its title bar offers
/// the review banner: first at the 27th opening, gone after the 42nd, never again once the user followed it.
class ReviewPrompt final
{
public:
    explicit ReviewPrompt(Preferences& preferences);

    /// Counts the opening and shows or hides the banner in `Preferences::showReviewRequest`.
    void onWindowOpened();

private:
    Preferences& m_preferences;
};
