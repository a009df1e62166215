#include "panels/ColorField.h"

#include "panels/RowValues.h"
#include "panels/Theme.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr int stripCount = 24;
constexpr int hueStepDegrees = 5;
constexpr int hueStops = 71; // 0, 5, ... 350 degrees
constexpr double smallStep = 1.0 / 20;
constexpr double pageStep = 1.0 / 5;
constexpr qreal markerRadius = 4;

} // namespace

ColorField::ColorField(QWidget* parent) : PanelControl(parent)
{
    setFixedHeight(fieldHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::CrossCursor);
}

void ColorField::setMarker(double hue, double saturation)
{
    hue = std::clamp(hue, 0.0, 1.0);
    saturation = std::clamp(saturation, 0.0, 1.0);
    if (hue == m_hue && saturation == m_saturation)
        return;
    m_hue = hue;
    m_saturation = saturation;
    update();
    announceValue();
}

QSize ColorField::sizeHint() const
{
    return {180, fieldHeight};
}

QSize ColorField::minimumSizeHint() const
{
    return {20, fieldHeight};
}

void ColorField::setAccessibleValue(double value)
{
    pick(value / 360, m_saturation);
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
    painter.setOpacity(paintOpacity());
    painter.drawPixmap(0, 0, m_gradient);

    // The marker: a dark ring inside a light one reads on every colour of the field.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const QPointF centre(m_hue * (width() - 1) + 0.5, m_saturation * (height() - 1) + 0.5);
    painter.setPen(QPen(QColor(255, 255, 255, 230), 3));
    painter.drawEllipse(centre, markerRadius, markerRadius);
    painter.setPen(QPen(QColor(0, 0, 0, 200), 1.2));
    painter.drawEllipse(centre, markerRadius, markerRadius);

    paintFocusRing(painter, QRectF(rect()), Theme::controlRadius);
}

void ColorField::pointerAt(QPointF position)
{
    pick(RowValues::fraction(position.x(), width()), RowValues::fraction(position.y(), height()));
}

void ColorField::keyStep(int steps, int rows, bool page, int toEnd)
{
    if (toEnd != 0) {
        pick(toEnd < 0 ? 0.0 : 1.0, m_saturation);
        return;
    }
    const double step = page ? pageStep : smallStep;
    pick(m_hue + steps * step, m_saturation + rows * smallStep);
}

void ColorField::pick(double hue, double saturation)
{
    setMarker(hue, saturation);
    Q_EMIT picked(m_hue, m_saturation);
}
