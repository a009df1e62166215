#include "panels/Theme.h"

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

} // namespace Theme
