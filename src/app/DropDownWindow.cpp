#include "app/DropDownWindow.h"

#include "app/HeightGrip.h"

#include <QImage>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

DropDownWindow::DropDownWindow(QWidget* content)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), m_content(content),
      m_grip(new HeightGrip(this))
{
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowTitle(QStringLiteral("Glowdeck"));
    setMinimumWidth(contentWidth);
    setMinimumHeight(minimumWindowHeight);
    // The window holds the focus itself when it opens (see StatusBarMenuWindowController::show), so no
    // control wears a focus ring before the user presses Tab; Escape reaches it from anywhere inside.
    setFocusPolicy(Qt::ClickFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_content);
    // The grip lies over the content's edge rather than beside it, so the content's height is the window's
    // height and a stored height opens the same window again.
    m_grip->raise();
}

QWidget* DropDownWindow::releaseContent()
{
    QWidget* content = m_content;
    if (!content)
        return nullptr;
    layout()->removeWidget(content);
    content->setParent(nullptr);
    m_content = nullptr;
    return content;
}

void DropDownWindow::adoptContent(QWidget* content)
{
    if (m_content == content)
        return;
    m_content = content;
    layout()->addWidget(content);
    content->show();
    m_grip->raise();
}

void DropDownWindow::setShapedCorners(bool shaped)
{
    if (m_shaped == shaped)
        return;
    m_shaped = shaped;
    updateShape();
}

QRegion DropDownWindow::fullyCoveredRegion(QSize size, qreal radius)
{
    if (size.isEmpty())
        return {};
    // Only the four corner squares can hold partly covered pixels: draw the shape there and keep what is
    // fully opaque.
    const int corner = qMin(qCeil(radius) + 1, qMin(size.width(), size.height()) / 2);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawRoundedRect(QRectF(QPointF(0, 0), QSizeF(size)), radius, radius);
    }
    QRegion region(0, 0, size.width(), size.height());
    const int right = size.width() - corner;
    const int bottom = size.height() - corner;
    for (const QPoint origin : {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)}) {
        for (int y = origin.y(); y < origin.y() + corner; ++y) {
            const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
            for (int x = origin.x(); x < origin.x() + corner; ++x) {
                if (qAlpha(line[x]) < 255)
                    region -= QRegion(x, y, 1, 1);
            }
        }
    }
    return region;
}

bool DropDownWindow::event(QEvent* event)
{
    if (event->type() == QEvent::WindowDeactivate)
        Q_EMIT deactivated();
    return QWidget::event(event);
}

void DropDownWindow::keyPressEvent(QKeyEvent* event)
{
    // Controls that do not use a key pass it up to here.
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        Q_EMIT escapePressed();
        return;
    }
    QWidget::keyPressEvent(event);
}

void DropDownWindow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_grip->place();
    updateShape();
}

void DropDownWindow::updateShape()
{
    if (m_shaped)
        setMask(fullyCoveredRegion(size(), cornerRadius));
    else
        clearMask();
}
