#include "preferences/panes/LinkButtonFrames.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

// The story, in frames: the finger comes in, presses, goes away; the ring lights up and glows until the end.
constexpr int pressStart = 16;
constexpr int pressEnd = 24;
constexpr int leaveEnd = 36;

constexpr QPointF buttonCentre(160, 104);
constexpr qreal buttonRadius = 21;

qreal easeInOut(qreal t)
{
    t = std::clamp(t, 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

/// Where the fingertip is, and how far the button is pushed in (0 to 1).
std::pair<QPointF, qreal> fingerAt(int frame)
{
    const QPointF away(330, -70);
    const QPointF touching = buttonCentre + QPointF(2, -4);
    if (frame < pressStart) {
        const qreal t = easeInOut(qreal(frame) / pressStart);
        return {away + (touching - away) * t, 0};
    }
    if (frame < pressEnd) {
        // Down and up again within the press.
        const qreal t = qreal(frame - pressStart) / (pressEnd - pressStart);
        const qreal depth = std::sin(t * M_PI);
        return {touching + QPointF(0, 5 * depth), depth};
    }
    const qreal t = easeInOut(qreal(frame - pressEnd) / (leaveEnd - pressEnd));
    return {touching + (away - touching) * t, 0};
}

void drawBridge(QPainter& painter, int frame, bool dark, qreal pushed)
{
    // The bridge seen from above: a rounded square with three status lights along its top edge.
    const QRectF body(buttonCentre.x() - 62, buttonCentre.y() - 62, 124, 124);
    painter.setPen(QPen(dark ? QColor(90, 90, 96) : QColor(196, 196, 204), 2));
    painter.setBrush(dark ? QColor(58, 58, 64) : QColor(250, 250, 252));
    painter.drawRoundedRect(body, 26, 26);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(64, 156, 255));
    for (int i = -1; i <= 1; ++i)
        painter.drawEllipse(QPointF(buttonCentre.x() + i * 14, body.top() + 15), 2.6, 2.6);

    // The ring lights up once the button was pressed and then breathes.
    if (frame >= pressEnd) {
        const qreal phase = qreal(frame - pressEnd) / (LinkButtonFrames::lastFrame - pressEnd);
        const qreal glow = 0.6 + 0.4 * std::sin(phase * 3 * M_PI);
        QRadialGradient halo(buttonCentre, buttonRadius + 18);
        halo.setColorAt(0.55, QColor(64, 156, 255, int(170 * glow)));
        halo.setColorAt(1.0, QColor(64, 156, 255, 0));
        painter.setBrush(halo);
        painter.drawEllipse(buttonCentre, buttonRadius + 18, buttonRadius + 18);
    }

    const qreal radius = buttonRadius * (1 - 0.08 * pushed);
    painter.setPen(QPen(frame >= pressEnd ? QColor(64, 156, 255)
                                          : (dark ? QColor(120, 120, 128) : QColor(176, 176, 186)),
                        3));
    painter.setBrush(dark ? QColor(76, 76, 84).darker(100 + int(30 * pushed))
                          : QColor(236, 236, 242).darker(100 + int(12 * pushed)));
    painter.drawEllipse(buttonCentre, radius, radius);
}

void drawFinger(QPainter& painter, QPointF tip, bool dark)
{
    // A finger coming from the top right, seen from above: a long rounded shape ending in a nail.
    painter.save();
    painter.translate(tip);
    painter.rotate(38);
    QPainterPath finger;
    finger.addRoundedRect(QRectF(-15, -150, 30, 152), 15, 15);
    painter.setPen(QPen(dark ? QColor(150, 104, 70) : QColor(184, 128, 86), 2));
    painter.setBrush(QColor(240, 196, 150));
    painter.drawPath(finger);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(250, 224, 200));
    painter.drawRoundedRect(QRectF(-9, -28, 18, 22), 8, 8);
    painter.restore();
}

} // namespace

namespace LinkButtonFrames {

QString name(int frame)
{
    return QStringLiteral("frame_%1").arg(frame);
}

void draw(QPainter& painter, const QRectF& target, int frame, bool dark)
{
    frame = std::clamp(frame, 0, lastFrame);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(target);
    painter.translate(target.topLeft());
    painter.scale(target.width() / designWidth, target.height() / designHeight);

    const auto [tip, pushed] = fingerAt(frame);
    drawBridge(painter, frame, dark, pushed);
    if (frame < leaveEnd)
        drawFinger(painter, tip, dark);
    painter.restore();
}

} // namespace LinkButtonFrames
