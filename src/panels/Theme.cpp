#include "panels/Theme.h"

#include <QPainter>
#include <QPalette>
#include <QWidget>

namespace Theme {

bool isDark(const QWidget* widget)
{
    const QPalette palette = widget ? widget->palette() : QPalette();
    return palette.color(QPalette::Window).lightnessF() < 0.5;
}

QColor background(bool dark)
{
    QColor colour = dark ? QColor::fromRgbF(0.1f, 0.1f, 0.1f) : QColor(242, 237, 243);
    colour.setAlphaF(0.98f);
    return colour;
}

QColor chrome(bool dark)
{
    return dark ? QColor::fromRgbF(0.3f, 0.3f, 0.3f) : QColor::fromRgbF(0.97f, 0.97f, 0.97f);
}

QColor chromeStrong(bool dark)
{
    return dark ? QColor(Qt::black) : QColor::fromRgbF(0.9f, 0.9f, 0.9f);
}

QColor text(bool dark)
{
    return dark ? QColor(Qt::white) : QColor(Qt::black);
}

QColor focusRing(bool dark)
{
    return dark ? QColor(110, 170, 255) : QColor(0, 100, 210);
}

QColor link(bool dark)
{
    return dark ? QColor(120, 180, 255) : QColor(0, 90, 190);
}

QColor bannerBackground(bool dark)
{
    return dark ? QColor(120, 70, 0) : QColor(255, 224, 160);
}

void paintFocusRing(QPainter& painter, const QRectF& rect, qreal radius, bool dark)
{
    painter.save();
    painter.setOpacity(1);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(focusRing(dark), 2));
    painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius, radius);
    painter.restore();
}

} // namespace Theme
