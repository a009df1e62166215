#include "app/DropDownWindow.h"

#include "app/HeightGrip.h"

#include <QGuiApplication>
#include <QPainterPath>
#include <QRegion>
#include <QVBoxLayout>

DropDownWindow::DropDownWindow(QWidget* content)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), m_content(content),
      m_grip(new HeightGrip(this))
{
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowTitle(QStringLiteral("Glowdeck"));
    setFixedWidth(contentWidth);
    setMinimumHeight(minimumWindowHeight);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_content);
    // The grip lies over the content's bottom edge rather than below it, so the content's height is the
    // window's height and a stored height opens the same window again.
    m_grip->raise();
}

bool DropDownWindow::event(QEvent* event)
{
    if (event->type() == QEvent::WindowDeactivate)
        Q_EMIT deactivated();
    return QWidget::event(event);
}

void DropDownWindow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_grip->setGeometry(0, height() - HeightGrip::thickness, width(), HeightGrip::thickness);
    m_grip->raise();
    // Without a compositor X11 paints translucent corners black; a shape keeps them see-through. With one
    // the shape costs nothing visible.
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        QPainterPath path;
        path.addRoundedRect(rect(), cornerRadius, cornerRadius);
        setMask(QRegion(path.toFillPolygon().toPolygon()));
    }
}
