#include "panels/PanelTab.h"

#include "panels/Theme.h"

#include <QAccessible>
#include <QPainter>

namespace {
constexpr int verticalPadding = 5;
constexpr int labelPointSize = 18;
constexpr qreal tabOpacity = 0.9;
} // namespace

PanelTab::PanelTab(const QString& label, const QString& name, QWidget* parent) : QAbstractButton(parent)
{
    setText(label);
    setToolTip(name);
    setAccessibleName(name);
    QFont bold = font();
    bold.setPointSize(labelPointSize);
    bold.setBold(true);
    setFont(bold);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    // Width comes from the row's equal stretch alone, never from the emoji's own width.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void PanelTab::setActive(bool active)
{
    if (m_active == active)
        return;
    m_active = active;
    update();
    if (QAccessible::isActive()) {
        QAccessible::State changed;
        changed.selected = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }
}

QSize PanelTab::sizeHint() const
{
    return {40, fontMetrics().height() + 2 * verticalPadding};
}

QSize PanelTab::minimumSizeHint() const
{
    return sizeHint();
}

void PanelTab::paintEvent(QPaintEvent*)
{
    const bool dark = Theme::isDark(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(tabOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_active ? QColor(Qt::yellow) : QColor(Qt::gray));
    painter.drawRoundedRect(QRectF(rect()), Theme::controlRadius, Theme::controlRadius);
    painter.setPen(m_active ? QColor(Qt::black) : Theme::text(dark));
    painter.drawText(rect(), Qt::AlignCenter, text());
    if (hasFocus())
        Theme::paintFocusRing(painter, QRectF(rect()), Theme::controlRadius, dark);
}
