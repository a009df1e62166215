#pragma once

#include <QColor>
#include <QPalette>
#include <QRectF>

class QPainter;
class QWidget;

/// The drop-down window's colours for light and dark appearance.
namespace Theme {

/// Dark when the widget's window colour is dark (follows the desktop's colour scheme).
bool isDark(const QWidget* widget);

/// The rounded background: grey 0.1 in dark, (242, 237, 243) in light, both at opacity 0.98.
QColor background(bool dark);
/// The two chrome greys: 0.3 in dark and 0.97 in light; black in dark and 0.9 in light.
QColor chrome(bool dark);
QColor chromeStrong(bool dark);
/// Text on the background.
QColor text(bool dark);
/// The ring around the control that has the keyboard focus.
QColor focusRing(bool dark);
/// Links in the empty-state texts, legible on either background.
QColor link(bool dark);
/// The one-line connection banner: its plate and its text.
QColor bannerBackground(bool dark);

/// A dark palette for every window of the program, for desktops whose dark preference Qt does not follow.
QPalette darkPalette();

/// Draws the keyboard-focus ring, 2 points wide, just inside @p rect.
void paintFocusRing(QPainter& painter, const QRectF& rect, qreal radius, bool dark);

/// Opacity of the row of a lamp or room that is off, or of every row while the bridge cannot be reached.
inline constexpr qreal dimmedOpacity = 0.45;

/// Corner radius of the window's background, in points.
inline constexpr qreal windowRadius = 10;
/// Corner radius of tabs, sliders, colour fields and scene buttons, in points.
inline constexpr qreal controlRadius = 5;

} // namespace Theme
