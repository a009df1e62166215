#include "app/WindowPlacement.h"

#include <algorithm>
#include <limits>

namespace WindowPlacement {

QRect dropDownFrame(std::optional<QRect> iconGeometry, int windowWidth, qint64 height, QRect availableScreen)
{
    const int frameHeight = static_cast<int>(
        std::clamp<qint64>(height, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    const int placedHeight = frameHeight > 0 ? frameHeight : fallbackHeight;
    const int screenRight = availableScreen.x() + availableScreen.width(); // one past the last pixel

    if (!iconGeometry || !iconGeometry->isValid() || iconGeometry->isEmpty()) {
        const QPoint centre = availableScreen.center();
        const int x = centre.x() - windowWidth / 2;
        const int y = std::max(availableScreen.top(), centre.y() - placedHeight / 2);
        return {x, y, windowWidth, frameHeight};
    }

    const QRect icon = *iconGeometry;
    int x = icon.x() + icon.width() / 2 - windowWidth / 2;
    if (screenRight < x + windowWidth)
        x = screenRight - windowWidth - margin;
    x = std::max(x, availableScreen.x() + margin);

    const bool panelAtBottom = icon.center().y() > availableScreen.center().y();
    int y = 0;
    if (panelAtBottom)
        y = std::max(availableScreen.top(), icon.y() - margin - placedHeight);
    else
        y = icon.y() + icon.height() + margin;
    return {x, y, windowWidth, frameHeight};
}

} // namespace WindowPlacement
