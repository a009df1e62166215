#pragma once

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

/// Sends one mouse event of a left-button drag straight to @p widget. (QTest's mouse functions take the
/// point (0, 0) for "the centre", and the left edge is exactly what some tests need.)
inline void sendMouse(QWidget* widget, QEvent::Type type, QPointF position)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, position, widget->mapToGlobal(position), button, held, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

/// A drag as the pointer makes it: press at the first point, moves with the button held, release at the last.
inline void drag(QWidget* widget, const QList<QPointF>& points)
{
    sendMouse(widget, QEvent::MouseButtonPress, points.first());
    for (qsizetype i = 1; i < points.size(); ++i)
        sendMouse(widget, QEvent::MouseMove, points.at(i));
    sendMouse(widget, QEvent::MouseButtonRelease, points.last());
}
