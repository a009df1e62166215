#include "panels/PanelControl.h"

#include "panels/Theme.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

PanelControl::PanelControl(QWidget* parent) : QWidget(parent)
{
    // Strong focus: a click gives the focus too, so the arrow keys go on from where the pointer left it.
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
}

void PanelControl::setDimmed(bool dimmed)
{
    if (m_dimmed == dimmed)
        return;
    m_dimmed = dimmed;
    update();
}

void PanelControl::announceValue()
{
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(this, accessibleValue());
    QAccessible::updateAccessibility(&event);
}

qreal PanelControl::paintOpacity() const
{
    return m_dimmed ? Theme::dimmedOpacity : 1.0;
}

void PanelControl::paintFocusRing(QPainter& painter, const QRectF& rect, qreal radius) const
{
    if (hasFocus() && m_keyboardFocus)
        Theme::paintFocusRing(painter, rect, radius, Theme::isDark(this));
}

void PanelControl::focusInEvent(QFocusEvent* event)
{
    // The ring shows the way through the window for keyboard users; a click needs none, as in browsers.
    m_keyboardFocus = event->reason() != Qt::MouseFocusReason;
    update();
    QWidget::focusInEvent(event);
}

void PanelControl::focusOutEvent(QFocusEvent* event)
{
    update();
    QWidget::focusOutEvent(event);
}

void PanelControl::keyPressEvent(QKeyEvent* event)
{
    const bool rtl = layoutDirection() == Qt::RightToLeft;
    int steps = 0;
    int rows = 0;
    bool page = false;
    int toEnd = 0;
    switch (event->key()) {
    case Qt::Key_Left:
        steps = rtl ? 1 : -1;
        break;
    case Qt::Key_Right:
        steps = rtl ? -1 : 1;
        break;
    case Qt::Key_Up:
        rows = -1;
        break;
    case Qt::Key_Down:
        rows = 1;
        break;
    case Qt::Key_PageUp:
        steps = 1;
        page = true;
        break;
    case Qt::Key_PageDown:
        steps = -1;
        page = true;
        break;
    case Qt::Key_Home:
        toEnd = -1;
        break;
    case Qt::Key_End:
        toEnd = 1;
        break;
    default:
        // Escape, Tab and the rest go on to the window.
        QWidget::keyPressEvent(event);
        return;
    }
    if (!m_keyboardFocus) {
        m_keyboardFocus = true;
        update();
    }
    keyStep(steps, rows, page, toEnd);
    event->accept();
}

void PanelControl::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_dragging = true;
    m_keyboardFocus = false;
    pointerAt(event->position());
}

void PanelControl::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging) {
        event->ignore();
        return;
    }
    pointerAt(event->position());
}

void PanelControl::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_dragging || event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    pointerAt(event->position());
    m_dragging = false;
}
