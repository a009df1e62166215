#pragma once

#include <QString>

class QPainter;
class QRectF;

/// The frames "frame_0" to "frame_62" of the animation beside the pairing hint: a finger comes down on the
/// round link button of a Hue bridge, presses it and goes away, and the button's ring lights up. Drawn in
/// code, for the light and the dark appearance, at any size (the design is 320 by 180).
namespace LinkButtonFrames {

inline constexpr int lastFrame = 62;
inline constexpr int designWidth = 320;
inline constexpr int designHeight = 180;

/// "frame_" followed by the frame's number.
QString name(int frame);
/// Draws frame `frame` (0 to lastFrame) stretched into `target`.
void draw(QPainter& painter, const QRectF& target, int frame, bool dark);

} // namespace LinkButtonFrames
