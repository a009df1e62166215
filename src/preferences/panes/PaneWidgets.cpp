#include "preferences/panes/PaneWidgets.h"

#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace PaneWidgets {

QLabel* heading(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 1.35);
    font.setBold(true);
    label->setFont(font);
    return label;
}

QLabel* subheading(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

QLabel* wrappedText(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    // A wrapped label asks for its height at its widest allowed width: pinning that width makes the pane's
    // height (and so the window's) come out right.
    label->setMaximumWidth(contentWidth);
    label->setMinimumWidth(contentWidth);
    return label;
}

bool isDark(const QWidget* widget)
{
    return widget->palette().color(QPalette::Window).lightness() < 128;
}

QColor goodColor(bool dark)
{
    return dark ? QColor(0x5c, 0xd1, 0x6f) : QColor(0x1b, 0x87, 0x2e);
}

QColor badColor(bool dark)
{
    return dark ? QColor(0xff, 0x6b, 0x6b) : QColor(0xc6, 0x28, 0x28);
}

} // namespace PaneWidgets

LinkButton::LinkButton(const QString& text, QWidget* parent) : QAbstractButton(parent)
{
    setText(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize LinkButton::sizeHint() const
{
    return fontMetrics().size(Qt::TextSingleLine, text()) + QSize(4, 4);
}

void LinkButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QFont font = this->font();
    font.setUnderline(m_hovered || hasFocus());
    painter.setFont(font);
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Link));
    painter.drawText(rect().adjusted(2, 2, -2, -2), Qt::AlignLeft | Qt::AlignVCenter, text());
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

void LinkButton::enterEvent(QEnterEvent* event)
{
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void LinkButton::leaveEvent(QEvent* event)
{
    m_hovered = false;
    update();
    QAbstractButton::leaveEvent(event);
}
