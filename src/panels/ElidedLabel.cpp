#include "panels/ElidedLabel.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(false);
    // The row decides the width; a long text never widens the window.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, fontMetrics().height()};
}

void ElidedLabel::setFullText(const QString& text)
{
    if (text == this->text())
        return;
    setText(text);
    updateElision();
}

void ElidedLabel::setTextOpacity(qreal opacity)
{
    if (qFuzzyCompare(opacity, m_opacity))
        return;
    m_opacity = opacity;
    update();
}

void ElidedLabel::updateElision()
{
    const int available = contentsRect().width();
    if (m_forText == text() && m_forWidth == available)
        return;
    m_forText = text();
    m_forWidth = available;
    m_shown = fontMetrics().elidedText(m_forText, Qt::ElideRight, available);
    const bool elided = m_shown != m_forText;
    if (elided != m_elided || (elided && toolTip() != m_forText)) {
        m_elided = elided;
        setToolTip(elided ? m_forText : QString());
    }
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    updateElision();
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    style()->drawItemText(&painter, contentsRect(), int(alignment()), palette(), isEnabled(), m_shown,
                          foregroundRole());
}

void ElidedLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    updateElision();
}

void ElidedLabel::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange)
        m_forWidth = -1;
    QLabel::changeEvent(event);
}
