#include "app/ReviewPrompt.h"

#include "state/Preferences.h"

#include <limits>

ReviewPrompt::ReviewPrompt(Preferences& preferences) : m_preferences(preferences) {}

void ReviewPrompt::onWindowOpened()
{
    // Every comparison uses the count before this opening. A count at the top of the range (only a
    // hand-edited file gets there) stays where it is instead of wrapping round.
    Preferences& preferences = m_preferences;
    const qint64 n = preferences.windowOpenings();
    if (n < std::numeric_limits<qint64>::max())
        preferences.setWindowOpenings(n + 1);

    if (preferences.hasReviewed())
        return;
    // The gap at n = 40 is deliberate: that opening neither shows nor hides the banner.
    if (m_preferences.showReviewRequest()) {
        if (n >= 41)
            m_preferences.setShowReviewRequest(false);
    } else if (n >= 26 && n <= 39) {
        m_preferences.setShowReviewRequest(true);
    }
}
