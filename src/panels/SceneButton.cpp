#include "panels/SceneButton.h"

#include "panels/Theme.h"

#include <QEnterEvent>
#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int padding = 10;
constexpr qreal nameFontSize = 12;
constexpr qreal restingOpacity = 0.2;
constexpr qreal hoverOpacity = 0.5;
constexpr int textFlags = Qt::AlignCenter | Qt::TextWordWrap;

} // namespace

SceneButton::SceneButton(const QString& sceneName, QWidget* parent) : QAbstractButton(parent)
{
    QFont font = this->font();
    font.setPointSizeF(nameFontSize);
    font.setWeight(QFont::Normal);
    setFont(font);
    setText(sceneName);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(buttonWidth, heightForName());
}

int SceneButton::heightForName() const
{
    const QRect bounds =
        QFontMetrics(font()).boundingRect(QRect(0, 0, buttonWidth - 2 * padding, 100000), textFlags, text());
    return bounds.height() + 2 * padding;
}

QSize SceneButton::sizeHint() const
{
    return {buttonWidth, heightForName()};
}

void SceneButton::changeEvent(QEvent* event)
{
    // The height follows the name's lines; the width stays fixed.
    if (event->type() == QEvent::FontChange)
        setFixedSize(buttonWidth, heightForName());
    QAbstractButton::changeEvent(event);
}

void SceneButton::paintEvent(QPaintEvent*)
{
    const bool dark = Theme::isDark(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setOpacity(m_opacity);
    painter.setBrush(dark ? QColor(Qt::black) : QColor(Qt::white));
    painter.drawRoundedRect(QRectF(rect()), Theme::controlRadius, Theme::controlRadius);

    painter.setOpacity(1);
    painter.setPen(Theme::text(dark));
    painter.setClipRect(rect());
    painter.drawText(rect().adjusted(padding, padding, -padding, -padding), textFlags, text());
}

void SceneButton::enterEvent(QEnterEvent* event)
{
    m_opacity = hoverOpacity;
    update();
    QAbstractButton::enterEvent(event);
}

void SceneButton::leaveEvent(QEvent* event)
{
    m_opacity = restingOpacity;
    update();
    QAbstractButton::leaveEvent(event);
}
