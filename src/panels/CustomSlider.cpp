#include "panels/CustomSlider.h"

#include "panels/Theme.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

CustomSlider::CustomSlider(QWidget* parent) : QWidget(parent)
{
    setFixedHeight(trackHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
}

void CustomSlider::setValue(float value)
{
    const float clamped = std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 0.0f;
    if (clamped == m_value)
        return;
    m_value = clamped;
    update();
}

QSize CustomSlider::sizeHint() const
{
    return {180, trackHeight};
}

QSize CustomSlider::minimumSizeHint() const
{
    return {20, trackHeight};
}

void CustomSlider::paintEvent(QPaintEvent*)
{
    const bool dark = Theme::isDark(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);

    const qreal w = width();
    painter.setOpacity(dark ? 1.0 : 0.6);
    painter.setBrush(dark ? QColor(Qt::black) : QColor(Qt::white));
    painter.drawRoundedRect(QRectF(0, 0, w, trackHeight), Theme::controlRadius, Theme::controlRadius);

    const qreal fillWidth = (w - 2) * m_value;
    if (fillWidth <= 0)
        return;
    // A brighter setting draws a more opaque bar, never fainter than 0.3.
    painter.setOpacity(std::max(0.3, m_value * 0.5 + 0.3));
    painter.setBrush(dark ? QColor(Qt::white) : QColor::fromRgbF(0.7f, 0.7f, 0.7f));
    painter.drawRoundedRect(QRectF(1, 1, fillWidth, trackHeight - 2), Theme::controlRadius,
                            Theme::controlRadius);
}

void CustomSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_dragging = true;
    followPointer(event->position().x());
}

void CustomSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging) {
        event->ignore();
        return;
    }
    followPointer(event->position().x());
}

void CustomSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_dragging || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    followPointer(event->position().x());
    m_dragging = false;
}

void CustomSlider::followPointer(qreal x)
{
    const qreal w = width();
    const float value = w > 0 ? float(std::clamp(x / w, 0.0, 1.0)) : 0.0f;
    m_value = std::isfinite(value) ? value : 0.0f;
    update();
    Q_EMIT valueChanged(m_value);
}
