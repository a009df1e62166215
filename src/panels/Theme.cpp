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

QPalette darkPalette()
{
    const QColor window(43, 43, 43);
    const QColor text(238, 238, 238);
    const QColor faint(128, 128, 128);
    QPalette palette(window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    palette.setColor(QPalette::AlternateBase, QColor(50, 50, 50));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(53, 53, 53));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(61, 122, 214));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, link(true));
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
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
