#include "panels/SceneButton.h"

#include "panels/Theme.h"

#include <QEnterEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

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
    setFocusPolicy(Qt::TabFocus);
    setFixedSize(buttonWidth, heightForName());
    // One word wider than the plate is cut by it: the tooltip tells the whole name.
    const QFontMetrics metrics(font);
    const QStringList words = sceneName.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (std::any_of(words.cbegin(), words.cend(), [&metrics](const QString& word) {
            return metrics.horizontalAdvance(word) > buttonWidth - 2 * padding;
        }))
        setToolTip(sceneName);
}

void SceneButton::setDimmed(bool dimmed)
{
    if (m_dimmed == dimmed)
        return;
    m_dimmed = dimmed;
    update();
}

void SceneButton::keyPressEvent(QKeyEvent* event)
{
    // Space presses every button already; Enter is what a list of actions also takes.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
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
    const qreal dim = m_dimmed ? Theme::dimmedOpacity : 1.0;
    painter.setOpacity(m_opacity * dim);
    painter.setBrush(dark ? QColor(Qt::black) : QColor(Qt::white));
    painter.drawRoundedRect(QRectF(rect()), Theme::controlRadius, Theme::controlRadius);

    painter.setOpacity(dim);
    painter.setPen(Theme::text(dark));
    painter.setClipRect(rect());
    painter.drawText(rect().adjusted(padding, padding, -padding, -padding), textFlags, text());
    if (hasFocus())
        Theme::paintFocusRing(painter, QRectF(rect()), Theme::controlRadius, dark);
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
