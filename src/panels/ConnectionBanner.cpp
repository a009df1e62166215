#include "panels/ConnectionBanner.h"

#include "panels/Theme.h"
#include "state/ActivityLog.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace {
constexpr int horizontalMargin = 6;
constexpr int verticalMargin = 4;
constexpr qreal fontSize = 9;
} // namespace

ConnectionBanner::ConnectionBanner(BridgeLink& settings, QWidget* parent)
    : QWidget(parent), m_settings(settings), m_text(new QLabel(this))
{
    setObjectName(QStringLiteral("connectionBanner"));
    m_text->setObjectName(QStringLiteral("connectionBannerText"));
    QFont font = m_text->font();
    font.setPointSizeF(fontSize);
    m_text->setFont(font);
    m_text->setAlignment(Qt::AlignCenter);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(horizontalMargin, verticalMargin, horizontalMargin, verticalMargin);
    layout->addWidget(m_text);

    for (auto changed : {&BridgeHome::bridgeConnectedChanged, &BridgeHome::connectionErrorMessageChanged})
        connect(&m_settings.home(), changed, this, &ConnectionBanner::onStateChanged);
    connect(&m_settings, &BridgeLink::hueKeyChanged, this, &ConnectionBanner::onStateChanged);
    for (auto changed : {&ActivityLog::noticeChanged, &ActivityLog::settingsSaveErrorChanged})
        connect(&m_settings.activity(), changed, this, &ConnectionBanner::onStateChanged);
    onStateChanged();
    applyColours();
}

QString ConnectionBanner::message() const
{
    return m_text->text();
}

void ConnectionBanner::onStateChanged()
{
    const QString error = m_settings.home().connectionErrorMessage();
    const bool paired = !m_settings.hueKey().isEmpty();
    QString text;
    if (!m_settings.home().bridgeConnected() && (paired || !error.isEmpty()))
        text = error.isEmpty() ? tr("Bridge not reachable \u2014 retrying") : error;
    else if (!m_settings.activity().settingsSaveError().isEmpty())
        text = tr("Settings could not be saved: %1").arg(m_settings.activity().settingsSaveError());
    else
        text = m_settings.activity().notice();
    const bool shown = !text.isEmpty();
    if (shown)
        m_text->setText(text);
    if (isVisibleTo(parentWidget()) != shown)
        setVisible(shown);
}

void ConnectionBanner::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::bannerBackground(Theme::isDark(this)));
    painter.drawRoundedRect(QRectF(rect()).adjusted(horizontalMargin - 3, 1, 3 - horizontalMargin, -1),
                            Theme::controlRadius, Theme::controlRadius);
}

void ConnectionBanner::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        applyColours();
    QWidget::changeEvent(event);
}

void ConnectionBanner::applyColours()
{
    QPalette palette = m_text->palette();
    palette.setColor(QPalette::WindowText, Theme::text(Theme::isDark(this)));
    m_text->setPalette(palette);
}
