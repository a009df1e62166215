#include "preferences/window/PausableWindow.h"

#include <QApplication>
#include <QEvent>

PausableWindow::PausableWindow(QWidget* parent) : QWidget(parent, Qt::Window) {}

PausableWindow::~PausableWindow()
{
    if (!m_interactive)
        qApp->removeEventFilter(this);
}

void PausableWindow::setUserInteractionEnabled(bool enabled)
{
    if (enabled == m_interactive)
        return;
    m_interactive = enabled;
    // Events go straight to the widget under the pointer or in focus, not through this window: only an
    // application-wide filter sees them all, and it is installed only for the quarter second it is needed.
    if (enabled)
        qApp->removeEventFilter(this);
    else
        qApp->installEventFilter(this);
}

bool PausableWindow::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        // Widgets, their pop-ups and the window's shortcuts all have this window among their ancestors.
        for (QObject* object = watched; object; object = object->parent()) {
            if (object == this)
                return true;
        }
        return false;
    default:
        return false;
    }
}

void PausableWindow::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    Q_EMIT hidden();
}
