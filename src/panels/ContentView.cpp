#include "panels/ContentView.h"

#include "bridge/BridgeCommands.h"
#include "panels/BodyView.h"
#include "panels/ConnectionBanner.h"
#include "panels/ControlRow.h"
#include "panels/PanelAccessibility.h"
#include "panels/PanelTabs.h"
#include "panels/Theme.h"
#include "panels/TitleBars.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QChildEvent>
#include <QFontMetrics>
#include <QFrame>
#include <QPainter>
#include <QScrollBar>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace {

/// A one-pixel rule across the full width, in the chrome grey.
class Divider final : public QWidget
{
public:
    explicit Divider(QWidget* parent) : QWidget(parent)
    {
        setFixedHeight(1);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Theme::chromeStrong(Theme::isDark(this)));
    }
};

} // namespace

ContentView::ContentView(Preferences& preferences, BridgeSessions& sessions, const ProductLinks& links,
                         QWidget* parent)
    : QWidget(parent), m_sessions(sessions), m_welcomeTitle(new WelcomeTitlebarView(this)),
      m_regularTitle(new RegularTitlebarView(preferences, links, this)),
      m_tabs(new PanelTabs(preferences, this)), m_banner(new ConnectionBanner(sessions, this)),
      m_body(new BodyView(preferences, sessions, this))
{
    PanelAccessibility::install();
    setMinimumSize(contentWidth, minimumHeight);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_welcomeTitle);
    layout->addWidget(m_regularTitle);
    layout->addWidget(new Divider(this));
    layout->addWidget(m_tabs);
    layout->addWidget(m_banner);
    layout->addWidget(m_body, 1);

    connect(m_welcomeTitle, &WelcomeTitlebarView::settingsRequested, this, &ContentView::settingsRequested);
    const auto openMenu = [this](QWidget* anchor) {
        Q_EMIT menuRequested(anchor->mapToGlobal(QPoint(0, anchor->height())));
    };
    connect(m_welcomeTitle, &WelcomeTitlebarView::menuRequested, this, openMenu);
    connect(m_regularTitle, &RegularTitlebarView::menuRequested, this, openMenu);
    // The keyboard's way to the menu, as in every other window: the Menu key and Shift+F10.
    for (const QKeySequence& keys : {QKeySequence(Qt::Key_Menu), QKeySequence(Qt::SHIFT | Qt::Key_F10)}) {
        auto* shortcut = new QShortcut(keys, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, [this, openMenu] {
            openMenu(m_welcomeTitle->isVisible()
                         ? m_welcomeTitle->findChild<QWidget*>(QStringLiteral("menuButton"))
                         : m_regularTitle->findChild<QWidget*>(QStringLiteral("menuButton")));
        });
    }
    connect(m_regularTitle, &RegularTitlebarView::settingsRequested, this, &ContentView::settingsRequested);
    connect(m_body, &BodyView::connectionSettingsRequested, this, &ContentView::connectionSettingsRequested);
    for (BridgeSession* session : m_sessions.all())
        followSession(session);
    connect(&m_sessions, &BridgeSessions::added, this, &ContentView::followSession);
    connect(&m_sessions, &BridgeSessions::removed, this,
            [this] { QMetaObject::invokeMethod(this, &ContentView::onLightsChanged, Qt::QueuedConnection); });
    onLightsChanged();

    watchClicks(this);
}

QSize ContentView::sizeHint() const
{
    int height = 0;
    for (QWidget* part : {static_cast<QWidget*>(m_welcomeTitle), static_cast<QWidget*>(m_regularTitle),
                          static_cast<QWidget*>(m_tabs), static_cast<QWidget*>(m_banner)}) {
        if (part->isVisibleTo(this))
            height += part->sizeHint().height();
    }
    height += 1; // the divider
    // Rows wrap less in a window the user made wider.
    height += m_body->naturalHeight(std::max(width(), contentWidth));

    // The longest name, whole, on one line with its row's controls; the lists' padding and a scroll bar
    // beside it.
    const QFontMetrics metrics(ControlRow::nameFont(font()));
    int widest = 0;
    for (const BridgeSession* session : m_sessions.all()) {
        const BridgeHome& home = session->link().home();
        for (const HueLight& light : home.lights())
            widest = std::max(widest, metrics.horizontalAdvance(light.name));
        for (const HueGroup& group : home.groups())
            widest = std::max(widest, metrics.horizontalAdvance(group.name));
    }
    if (widest == 0) // nothing listed yet: the hints and the greeting fit the narrowest window
        return QSize(contentWidth, std::max(height, minimumHeight));
    constexpr int listPadding = 10;
    const int width = ControlRow::widthForName(std::max(widest, ControlRow::shortestInlineName)) +
                      2 * listPadding + style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    return QSize(std::max(width, contentWidth), std::max(height, minimumHeight));
}

void ContentView::clearFilters()
{
    m_body->clearFilters();
}

void ContentView::followSession(BridgeSession* session)
{
    connect(&session->link().home(), &BridgeHome::lightsChanged, this, &ContentView::onLightsChanged);
    onLightsChanged();
}

void ContentView::onLightsChanged()
{
    // Before the first light is known the user has to connect to a bridge: the title bar leads there.
    const QList<BridgeSession*> sessions = m_sessions.all();
    const bool noLights = std::all_of(sessions.cbegin(), sessions.cend(), [](const BridgeSession* session) {
        return session->link().home().lights().isEmpty();
    });
    m_welcomeTitle->setVisible(noLights);
    m_regularTitle->setVisible(!noLights);
}

void ContentView::watchClicks(QObject* object)
{
    if (!object->isWidgetType())
        return;
    object->installEventFilter(this);
    for (QObject* child : object->children())
        watchClicks(child);
}

bool ContentView::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
        // Any touch of the window, or key pressed in it, holds back the periodic refresh, so a list does not
        // jump under the cursor or the keyboard focus.
        for (BridgeSession* session : m_sessions.all())
            session->commands().noteUserAction();
        break;
    case QEvent::ChildAdded:
        // Rows come and go with each refresh; every new widget joins the watch as soon as it is parented.
        watchClicks(static_cast<QChildEvent*>(event)->child());
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void ContentView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::background(Theme::isDark(this)));
    painter.drawRoundedRect(QRectF(rect()), Theme::windowRadius, Theme::windowRadius);
}
