#include "app/ReviewPrompt.h"

#include "state/AppSettings.h"
#include "state/SettingsStore.h"

#include <limits>

ReviewPrompt::ReviewPrompt(SettingsStore& store, AppSettings& settings) : m_store(store), m_settings(settings)
{}

void ReviewPrompt::onWindowOpened()
{
    // Every comparison uses the count before this opening. A count at the top of the range (only a
    // hand-edited file gets there) stays where it is instead of wrapping round.
    const qint64 n = m_store.readInt(appInvocationsKey);
    if (n < std::numeric_limits<qint64>::max())
        m_store.writeInt(appInvocationsKey, n + 1);

    if (m_store.readBool(noMoreReviewRequestsKey))
        return;
    // The gap at n = 40 is deliberate: that opening neither shows nor hides the banner.
    if (m_settings.showReviewRequest()) {
        if (n >= 41)
            m_settings.setShowReviewRequest(false);
    } else if (n >= 26 && n <= 39) {
        m_settings.setShowReviewRequest(true);
    }
}
