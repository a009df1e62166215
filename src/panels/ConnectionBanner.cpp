#include "panels/ConnectionBanner.h"

#include "panels/Theme.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
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

ConnectionBanner::ConnectionBanner(BridgeSessions& sessions, QWidget* parent)
    : QWidget(parent), m_sessions(sessions), m_text(new QLabel(this))
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

    for (BridgeSession* session : m_sessions.all())
        followSession(session);
    connect(&m_sessions, &BridgeSessions::added, this, &ConnectionBanner::followSession);
    connect(&m_sessions, &BridgeSessions::removed, this, [this] {
        QMetaObject::invokeMethod(this, &ConnectionBanner::onStateChanged, Qt::QueuedConnection);
    });
    onStateChanged();
    applyColours();
}

QString ConnectionBanner::message() const
{
    return m_text->text();
}

void ConnectionBanner::followSession(BridgeSession* session)
{
    BridgeLink& link = session->link();
    for (auto changed : {&BridgeHome::bridgeConnectedChanged, &BridgeHome::connectionErrorMessageChanged})
        connect(&link.home(), changed, this, &ConnectionBanner::onStateChanged);
    connect(&link, &BridgeLink::hueKeyChanged, this, &ConnectionBanner::onStateChanged);
    connect(&link, &BridgeLink::bridgeContactChanged, this, &ConnectionBanner::onStateChanged);
    // Every session writes to the application's one log; following it once is enough.
    if (!m_followsLog) {
        m_followsLog = true;
        for (auto changed : {&ActivityLog::noticeChanged, &ActivityLog::settingsSaveErrorChanged})
            connect(&link.activity(), changed, this, &ConnectionBanner::onStateChanged);
    }
    onStateChanged();
}

void ConnectionBanner::onStateChanged()
{
    const QList<BridgeSession*> sessions = m_sessions.all();
    if (sessions.isEmpty())
        return;
    QString text;
    for (BridgeSession* session : sessions) {
        const BridgeLink& link = session->link();
        const QString error = link.home().connectionErrorMessage();
        const bool paired = !link.hueKey().isEmpty();
        if (link.home().bridgeConnected() || (!paired && error.isEmpty()))
            continue;
        text = error.isEmpty() ? tr("Bridge not reachable \u2014 retrying") : error;
        // With several bridges, which one: the others answer.
        if (sessions.size() > 1)
            text = tr("%1: %2").arg(m_sessions.nameOf(*session), text);
        break;
    }
    const ActivityLog& activity = sessions.constFirst()->link().activity();
    if (text.isEmpty()) {
        text = activity.settingsSaveError().isEmpty()
                   ? activity.notice()
                   : tr("Settings could not be saved: %1").arg(activity.settingsSaveError());
    }
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
