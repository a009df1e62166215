#include "panels/RowSwitch.h"

#include "panels/Theme.h"

#include <QPainter>

namespace {
constexpr int switchWidth = 30;
constexpr int switchHeight = 13;
constexpr int ringRoom = 2; // around the switch, for the focus ring
} // namespace

RowSwitch::RowSwitch(QWidget* parent) : QAbstractButton(parent)
{
    setCheckable(true);
    setFixedSize(outerSize());
    setCursor(Qt::PointingHandCursor);
    // Reached with Tab; a click needs no focus, and a ring after every click would only distract.
    setFocusPolicy(Qt::TabFocus);
}

QSize RowSwitch::outerSize()
{
    return {switchWidth + 2 * ringRoom, switchHeight + 2 * ringRoom};
}

QSize RowSwitch::sizeHint() const
{
    return outerSize();
}

void RowSwitch::paintEvent(QPaintEvent*)
{
    const bool dark = Theme::isDark(this);
    const QColor ink = dark ? QColor(Qt::white) : QColor(Qt::black);
    const QColor paper = dark ? QColor(Qt::black) : QColor(Qt::white);
    const QRectF frame(ringRoom, ringRoom, switchWidth, switchHeight);
    const QRectF track = frame.adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = track.height() / 2;

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isChecked()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
    } else {
        QColor faint = ink;
        faint.setAlphaF(0.5f);
        painter.setPen(QPen(faint, 1));
        painter.setBrush(Qt::NoBrush);
    }
    painter.drawRoundedRect(track, radius, radius);

    const qreal knob = track.height() - 3;
    const qreal knobX = isChecked() ? track.right() - 1.5 - knob : track.left() + 1.5;
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? paper : ink);
    painter.drawEllipse(QRectF(knobX, track.top() + 1.5, knob, knob));

    if (hasFocus())
        Theme::paintFocusRing(painter, QRectF(rect()), radius + ringRoom, dark);
}
