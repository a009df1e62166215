#pragma once

#include <QPoint>
#include <QRect>
#include <QtGlobal>

#include <optional>

/// Where the drop-down window goes, as a pure function of the tray icon, the pointer and the screen, so it
/// can be tested without a tray.
namespace WindowPlacement {

/// The gap between the tray icon (or the pointer, or the screen edge) and the drop-down window, in pixels.
inline constexpr int margin = 5;
/// The height the vertical position assumes when the requested height is 0 or less.
inline constexpr int fallbackHeight = 280;

/// A placed window: its frame and whether it opened upwards (from a bottom panel, or above the pointer), so
/// that the height grip goes to the edge away from the panel.
struct Placement
{
    QRect frame;
    bool upwards = false;

    bool operator==(const Placement&) const = default;
};

/// The drop-down window's frame for content of `windowWidth` and the requested `height`.
///
/// With an icon the window is centred under it, moved left so its right edge stays `margin` inside the
/// available screen, and never closer than `margin` to the screen's left edge. Its top sits `margin` below
/// the icon; when the icon is in the lower half of the screen (a bottom panel) the window's bottom sits
/// `margin` above the icon instead. Without an icon geometry (a StatusNotifier tray reports none) the same
/// rules apply to the `pointer`, where the panel's click happened: centred on it, below it, or above it in
/// the lower half of the screen, kept inside `availableScreen` (which leaves the panels out).
///
/// The returned frame carries `height` exactly as given, even 0 or less; only the vertical position uses
/// `fallbackHeight` for such heights. The window applies its own minimum height afterwards.
Placement dropDownFrame(std::optional<QRect> iconGeometry, QPoint pointer, int windowWidth, qint64 height,
                        QRect availableScreen);

/// The height a window without a stored height opens with: its content's own height, at most two thirds
/// of the available screen height, at least `minimum`.
int heightFromContent(int contentHeight, QRect availableScreen, int minimum);

} // namespace WindowPlacement
