#include "app/WindowPlacement.h"

#include <algorithm>
#include <limits>

namespace WindowPlacement {

Placement dropDownFrame(std::optional<QRect> iconGeometry, QPoint pointer, int windowWidth, qint64 height,
                        QRect availableScreen)
{
    const int frameHeight = static_cast<int>(
        std::clamp<qint64>(height, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    const int placedHeight = frameHeight > 0 ? frameHeight : fallbackHeight;
    const int screenRight = availableScreen.x() + availableScreen.width(); // one past the last pixel
    const int screenBottom = availableScreen.y() + availableScreen.height();

    // Without an icon the pointer stands for it: a point-sized anchor where the panel was clicked, moved
    // inside the available area first (a panel's click lies outside it).
    const bool hasIcon = iconGeometry && iconGeometry->isValid() && !iconGeometry->isEmpty();
    const QRect anchor =
        hasIcon ? *iconGeometry
                : QRect(std::clamp(pointer.x(), availableScreen.left(), availableScreen.right()),
                        std::clamp(pointer.y(), availableScreen.top(), availableScreen.bottom()), 1, 1);

    int x = anchor.x() + anchor.width() / 2 - windowWidth / 2;
    if (screenRight < x + windowWidth)
        x = screenRight - windowWidth - margin;
    x = std::max(x, availableScreen.x() + margin);

    const bool upwards = anchor.center().y() > availableScreen.center().y();
    int y = 0;
    if (upwards) {
        y = std::max(availableScreen.top(), anchor.y() - margin - placedHeight);
    } else {
        y = anchor.y() + anchor.height() + margin;
        // An icon's panel sits outside the available area, so only the pointer can push the window off the
        // bottom: then it moves up as far as the screen allows.
        if (!hasIcon && y + placedHeight > screenBottom)
            y = std::max(availableScreen.top(), screenBottom - placedHeight);
    }
    return {QRect(x, y, windowWidth, frameHeight), upwards};
}

int heightFromContent(int contentHeight, QRect availableScreen, int minimum)
{
    const int cap = availableScreen.height() * 2 / 3;
    return std::max(minimum, std::min(contentHeight, cap));
}

} // namespace WindowPlacement
