#include "panels/TemperatureBar.h"

#include "panels/Theme.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

TemperatureBar::TemperatureBar(QWidget* parent) : QWidget(parent)
{
    setFixedHeight(barHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::CrossCursor);
}

QSize TemperatureBar::sizeHint() const
{
    return {int(nominalWidth), barHeight};
}

QSize TemperatureBar::minimumSizeHint() const
{
    return {20, barHeight};
}

void TemperatureBar::resizeEvent(QResizeEvent* event)
{
    m_curve = QPixmap();
    QWidget::resizeEvent(event);
}

void TemperatureBar::renderCurve()
{
    const qreal ratio = devicePixelRatioF();
    m_curve = QPixmap((QSizeF(size()) * ratio).toSize());
    m_curve.setDevicePixelRatio(ratio);
    m_curve.fill(Qt::transparent);

    // Low mireds (cool, bluish daylight near 6500 K) on the left, high mireds (candle-warm near 2000 K) on
    // the right, matching the row's ct_min..ct_max mapping.
    QLinearGradient gradient(0, 0, width(), 0);
    gradient.setColorAt(0.0, QColor(210, 226, 255));
    gradient.setColorAt(0.3, QColor(255, 249, 245));
    gradient.setColorAt(0.6, QColor(255, 214, 170));
    gradient.setColorAt(1.0, QColor(255, 147, 41));

    QPainter painter(&m_curve);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawRoundedRect(QRectF(rect()), Theme::controlRadius, Theme::controlRadius);
}

void TemperatureBar::paintEvent(QPaintEvent*)
{
    if (m_curve.isNull() || m_curve.deviceIndependentSize().toSize() != size() ||
        !qFuzzyCompare(m_curve.devicePixelRatio(), devicePixelRatioF()))
        renderCurve();
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_curve);
}

void TemperatureBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_dragging = true;
    Q_EMIT picked(event->position().x());
}

void TemperatureBar::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging) {
        event->ignore();
        return;
    }
    Q_EMIT picked(event->position().x());
}

void TemperatureBar::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_dragging || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_dragging = false;
    Q_EMIT picked(event->position().x());
}
