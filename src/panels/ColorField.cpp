#include "panels/ColorField.h"

#include "panels/Theme.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int stripCount = 24;
constexpr int hueStepDegrees = 5;
constexpr int hueStops = 71; // 0, 5, ... 350 degrees

} // namespace

ColorField::ColorField(QWidget* parent) : QWidget(parent)
{
    setFixedHeight(int(nominalHeight));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::CrossCursor);
}

QSize ColorField::sizeHint() const
{
    return {int(nominalWidth), int(nominalHeight)};
}

QSize ColorField::minimumSizeHint() const
{
    return {20, int(nominalHeight)};
}

void ColorField::resizeEvent(QResizeEvent* event)
{
    m_gradient = QPixmap();
    QWidget::resizeEvent(event);
}

void ColorField::renderGradient()
{
    const qreal ratio = devicePixelRatioF();
    m_gradient = QPixmap((QSizeF(size()) * ratio).toSize());
    m_gradient.setDevicePixelRatio(ratio);
    m_gradient.fill(Qt::transparent);

    QPainter painter(&m_gradient);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath clip;
    clip.addRoundedRect(QRectF(rect()), Theme::controlRadius, Theme::controlRadius);
    painter.setClipPath(clip);
    painter.setPen(Qt::NoPen);

    // 24 strips of one point, scaled to the field's height; saturation grows downward in steps of 0.04.
    const qreal stripHeight = qreal(height()) / stripCount;
    for (int i = 1; i <= stripCount; ++i) {
        QLinearGradient gradient(0, 0, width(), 0);
        for (int stop = 0; stop < hueStops; ++stop) {
            const qreal degrees = stop * hueStepDegrees;
            gradient.setColorAt(qreal(stop) / (hueStops - 1),
                                QColor::fromHsvF(degrees / 360, i * 4 / 100.0, 1));
        }
        // The strips overlap by a pixel so no seam shows at fractional heights.
        painter.fillRect(QRectF(0, (i - 1) * stripHeight, width(), stripHeight + 1), gradient);
    }
}

void ColorField::paintEvent(QPaintEvent*)
{
    if (m_gradient.isNull() || m_gradient.deviceIndependentSize().toSize() != size() ||
        !qFuzzyCompare(m_gradient.devicePixelRatio(), devicePixelRatioF()))
        renderGradient();
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_gradient);
}

void ColorField::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_dragging = true;
    Q_EMIT picked(event->position().x(), event->position().y());
}

void ColorField::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging) {
        event->ignore();
        return;
    }
    Q_EMIT picked(event->position().x(), event->position().y());
}

void ColorField::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_dragging || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_dragging = false;
    Q_EMIT picked(event->position().x(), event->position().y());
}
