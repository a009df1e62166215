#include "panels/CustomSlider.h"

#include "panels/RowValues.h"
#include "panels/Theme.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

// The filled part must stay legible against the track at the lowest setting: at least 3:1 in both
// appearances (a mid grey, not the light grey, in the light appearance).
constexpr qreal lightFillGrey = 0.25;
constexpr qreal lightMinimumOpacity = 0.6;
constexpr qreal darkMinimumOpacity = 0.45;

} // namespace

CustomSlider::CustomSlider(QWidget* parent) : PanelControl(parent)
{
    setFixedHeight(trackHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void CustomSlider::setValue(float value)
{
    const float clamped = std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 0.0f;
    if (clamped == m_value)
        return;
    m_value = clamped;
    update();
    announceValue();
}

QSize CustomSlider::sizeHint() const
{
    return {180, trackHeight};
}

QSize CustomSlider::minimumSizeHint() const
{
    return {20, trackHeight};
}

void CustomSlider::setAccessibleValue(double value)
{
    moveTo(float(value / 100));
}

void CustomSlider::paintEvent(QPaintEvent*)
{
    const bool dark = Theme::isDark(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const qreal opacity = paintOpacity();

    const qreal w = width();
    const QRectF track(0, 0, w, trackHeight);
    painter.setOpacity(opacity * (dark ? 1.0 : 0.6));
    painter.setBrush(dark ? QColor(Qt::black) : QColor(Qt::white));
    painter.drawRoundedRect(track, Theme::controlRadius, Theme::controlRadius);
    if (!dark) {
        // The white track alone hardly shows on the light background.
        painter.setOpacity(opacity * 0.15);
        painter.setPen(QPen(Qt::black, 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(track.adjusted(0.5, 0.5, -0.5, -0.5), Theme::controlRadius,
                                Theme::controlRadius);
        painter.setPen(Qt::NoPen);
    }

    const qreal fillWidth = (w - 2) * m_value;
    if (fillWidth > 0) {
        // A brighter setting draws a more opaque bar.
        const qreal floor = dark ? darkMinimumOpacity : lightMinimumOpacity;
        painter.setOpacity(opacity * std::max(floor, m_value * 0.5 + 0.3));
        painter.setBrush(dark ? QColor(Qt::white)
                              : QColor::fromRgbF(lightFillGrey, lightFillGrey, lightFillGrey));
        painter.drawRoundedRect(QRectF(1, 1, std::max(fillWidth, 2.0), trackHeight - 2), Theme::controlRadius,
                                Theme::controlRadius);
    }
    paintFocusRing(painter, track, Theme::controlRadius);
}

void CustomSlider::pointerAt(QPointF position)
{
    moveTo(float(RowValues::fraction(position.x(), width())));
}

void CustomSlider::keyStep(int steps, int rows, bool page, int toEnd)
{
    if (toEnd != 0) {
        moveTo(toEnd < 0 ? 0.0f : 1.0f);
        return;
    }
    // Up raises the value, as on every horizontal slider.
    const float step = page ? pageStepSize : keyStepSize;
    moveTo(m_value + float(steps - rows) * step);
}

void CustomSlider::moveTo(float value)
{
    m_value = std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 0.0f;
    update();
    announceValue();
    Q_EMIT valueChanged(m_value);
}
