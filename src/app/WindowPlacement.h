#pragma once

#include <QRect>
#include <QtGlobal>

#include <optional>

/// Where the drop-down window goes, as a pure function of the tray icon and the screen, so it can be tested
/// without a tray.
namespace WindowPlacement {

/// The gap between the tray icon (or the screen edge) and the drop-down window, in pixels.
inline constexpr int margin = 5;
/// The height the vertical position assumes when the requested height is 0 or less.
inline constexpr int fallbackHeight = 280;

/// The drop-down window's frame for content of `windowWidth` and the requested `height`.
///
/// With an icon the window is centred under it, moved left so its right edge stays `margin` inside the
/// available screen, and never closer than `margin` to the screen's left edge. Its top sits `margin` below
/// the icon; when the icon is in the lower half of the screen (a bottom panel) the window's bottom sits
/// `margin` above the icon instead. Without an icon geometry (a StatusNotifier tray reports none) the window
/// is centred on `availableScreen`.
///
/// The returned frame carries `height` exactly as given, even 0 or less; only the vertical position uses
/// `fallbackHeight` for such heights. The window applies its own minimum height afterwards.
QRect dropDownFrame(std::optional<QRect> iconGeometry, int windowWidth, qint64 height, QRect availableScreen);

} // namespace WindowPlacement
