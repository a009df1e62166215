#include "panels/TemperatureBar.h"

#include "panels/RowValues.h"
#include "panels/Theme.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>

namespace {
constexpr double smallStep = 1.0 / 20;
constexpr double pageStep = 1.0 / 5;
} // namespace

TemperatureBar::TemperatureBar(QWidget* parent) : PanelControl(parent)
{
    setFixedHeight(barHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::CrossCursor);
}

void TemperatureBar::setMarker(double warmth)
{
    warmth = std::clamp(warmth, 0.0, 1.0);
    if (warmth == m_warmth)
        return;
    m_warmth = warmth;
    update();
    announceValue();
}

QSize TemperatureBar::sizeHint() const
{
    return {180, barHeight};
}

QSize TemperatureBar::minimumSizeHint() const
{
    return {20, barHeight};
}

void TemperatureBar::setAccessibleValue(double value)
{
    pick(value / 100);
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
    painter.setOpacity(paintOpacity());
    painter.drawPixmap(0, 0, m_curve);

    // The mark: a dark line edged in white, the bar's full height, at the current tone.
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal x = std::clamp(m_warmth * (width() - 1) + 0.5, 2.0, width() - 2.0);
    painter.setPen(QPen(QColor(255, 255, 255, 230), 4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(x, 2), QPointF(x, height() - 2));
    painter.setPen(QPen(QColor(0, 0, 0, 200), 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(x, 2), QPointF(x, height() - 2));

    paintFocusRing(painter, QRectF(rect()), Theme::controlRadius);
}

void TemperatureBar::pointerAt(QPointF position)
{
    pick(RowValues::fraction(position.x(), width()));
}

void TemperatureBar::keyStep(int steps, int rows, bool page, int toEnd)
{
    if (toEnd != 0) {
        pick(toEnd < 0 ? 0.0 : 1.0);
        return;
    }
    pick(m_warmth + (steps - rows) * (page ? pageStep : smallStep));
}

void TemperatureBar::pick(double warmth)
{
    setMarker(warmth);
    Q_EMIT picked(m_warmth);
}
