#include "preferences/panes/ImagePlayer.h"

#include "preferences/panes/LinkButtonFrames.h"
#include "preferences/panes/PaneWidgets.h"

#include <QPainter>

ImagePlayer::ImagePlayer(QWidget* parent) : QWidget(parent)
{
    setFixedSize(sizeHint());
    setAccessibleName(tr("A finger presses the round link button in the middle of the bridge"));
    m_timer.setInterval(tickMilliseconds);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &ImagePlayer::tick);
}

QString ImagePlayer::imageName() const
{
    return LinkButtonFrames::name(m_imageIndex);
}

void ImagePlayer::tick()
{
    if (m_imageIndex < LinkButtonFrames::lastFrame)
        ++m_imageIndex;
    else if (m_resetDelay == 0)
        m_resetDelay = holdTicks;
    if (m_resetDelay > 0 && --m_resetDelay == 0)
        m_imageIndex = 0;
    update();
}

QSize ImagePlayer::sizeHint() const
{
    return QSize(LinkButtonFrames::designWidth, LinkButtonFrames::designHeight);
}

void ImagePlayer::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    LinkButtonFrames::draw(painter, rect(), m_imageIndex, PaneWidgets::isDark(this));
}

void ImagePlayer::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_timer.start();
}

void ImagePlayer::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_timer.stop();
}
