#include "panels/BodyView.h"

#include "panels/BridgeSections.h"
#include "panels/FilterField.h"
#include "panels/ListGroups.h"
#include "panels/ListLights.h"
#include "panels/ListScenes.h"
#include "panels/Theme.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>

namespace {

const QString settingsLink = QStringLiteral("#connection-settings");

/// The hint as rich text: line breaks kept, and the first "settings" (in the user's language) made a link to
/// the connection settings.
QString linkedText(const QString& text)
{
    QString html = text.toHtmlEscaped();
    //: The word of the empty lists' hints that becomes a link to the settings: write it exactly as it appears
    //: in their translations.
    const QString word = QCoreApplication::translate("BodyView", "settings");
    const qsizetype at = html.indexOf(word);
    if (at >= 0)
        html.replace(at, word.size(), QStringLiteral("<a href=\"%1\">%2</a>").arg(settingsLink, word));
    html.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
    return html;
}

} // namespace

BodyView::BodyView(Preferences& preferences, BridgeSessions& sessions, QWidget* parent)
    : QStackedWidget(parent), m_preferences(preferences), m_sessions(sessions),
      m_noLights(emptyState(QStringLiteral("NoLights"))), m_noGroups(emptyState(QStringLiteral("NoGroups"))),
      m_noScenes(emptyState(QStringLiteral("NoScenes")))
{
    applyColours();
    m_preferences.whenChanged({SettingsKeys::activePanel, SettingsKeys::showScenes}, this,
                              &BodyView::onContentChanged);
    connect(&m_sessions, &BridgeSessions::added, this, &BodyView::followFirstSession);
    // Sent while the session still lives: lists that show it go before it does.
    connect(&m_sessions, &BridgeSessions::removed, this, [this](BridgeSession* leaving) {
        if (leaving == m_first)
            dropLists();
        QMetaObject::invokeMethod(this, &BodyView::followFirstSession, Qt::QueuedConnection);
    });
    followFirstSession();
}

void BodyView::dropLists()
{
    for (QWidget* list :
         {static_cast<QWidget*>(m_lights), static_cast<QWidget*>(m_groups), static_cast<QWidget*>(m_scenes)})
        delete list;
    m_lights = nullptr;
    m_groups = nullptr;
    m_scenes = nullptr;
    for (const QMetaObject::Connection& connection : std::as_const(m_firstConnections))
        disconnect(connection);
    m_firstConnections.clear();
    m_first = nullptr;
}

void BodyView::followFirstSession()
{
    BridgeSession* first = m_sessions.first();
    if (first != m_first) {
        dropLists();
        m_first = first;
        if (m_first) {
            BridgeHome& home = m_first->link().home();
            for (auto changed :
                 {&BridgeHome::lightsChanged, &BridgeHome::groupsChanged, &BridgeHome::scenesChanged})
                m_firstConnections << connect(&home, changed, this, &BodyView::onContentChanged);
            m_firstConnections << connect(&home, &BridgeHome::bridgeConnectedChanged, this,
                                          &BodyView::onConnectionChanged);
            for (auto changed : {&BridgeLink::hueKeyChanged, &BridgeLink::hueIPChanged})
                m_firstConnections << connect(&m_first->link(), changed, this,
                                              &BodyView::onConnectionChanged);
        }
    }
    onConnectionChanged();
    onContentChanged();
}

void BodyView::clearFilters()
{
    for (FilterField* field : findChildren<FilterField*>())
        field->clear();
}

QList<BridgeSection*> BodyView::sections() const
{
    if (auto* sections = qobject_cast<BridgeSections*>(currentWidget()))
        return sections->sections();
    return {};
}

QString BodyView::noLightsText()
{
    return tr("Okay, we're not able to detect any lights just yet.\n\n"
              "Have you opened the settings and connected to the bridge?");
}

QString BodyView::noGroupsText()
{
    return tr("There aren't any rooms visible just yet.\n\n"
              "Have you opened the settings and connected to the bridge?");
}

QString BodyView::noScenesText()
{
    return tr("There aren't any scenes visible just yet.\n\n"
              "Have you opened the settings and connected to the bridge?");
}

QString BodyView::unreachableText(const QString& bridge, const QString& what)
{
    return tr("The bridge at %1 does not answer.\n\n"
              "Glowdeck keeps trying and shows your %2 as soon as it does. Is the bridge switched on and on "
              "this network? The settings show the connection.")
        .arg(bridge, what);
}

QLabel* BodyView::emptyState(const QString& name)
{
    auto* label = new QLabel(this);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    label->setContentsMargins(12, 12, 12, 12);
    label->setTextFormat(Qt::RichText);
    // Tab reaches the link, Enter follows it.
    label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    connect(label, &QLabel::linkActivated, this, [this](const QString& link) {
        if (link == settingsLink)
            Q_EMIT connectionSettingsRequested();
    });
    addWidget(label);
    return label;
}

void BodyView::showHint(QLabel* hint, const QString& text)
{
    // Screen readers read the plain sentence, not the markup.
    if (hint->accessibleName() == text)
        return;
    hint->setAccessibleName(text);
    hint->setText(linkedText(text));
}

void BodyView::onConnectionChanged()
{
    if (!m_first)
        return;
    // Paired and not answering: say so, instead of suggesting to connect a program that is connected.
    const BridgeLink& link = m_first->link();
    const bool unreachable =
        !link.home().bridgeConnected() && !link.hueIP().isEmpty() && !link.hueKey().isEmpty();
    const QString bridge = link.hueIP();
    showHint(m_noLights, unreachable ? unreachableText(bridge, tr("lights")) : noLightsText());
    showHint(m_noGroups, unreachable ? unreachableText(bridge, tr("rooms")) : noGroupsText());
    showHint(m_noScenes, unreachable ? unreachableText(bridge, tr("scenes")) : noScenesText());
}

int BodyView::naturalHeight(int width) const
{
    QWidget* page = currentWidget();
    if (auto* list = qobject_cast<ScrollColumn*>(page))
        return list->naturalHeight();
    if (page && page == m_scenes)
        return m_scenes->naturalHeight();
    if (auto* sections = qobject_cast<BridgeSections*>(page))
        return sections->naturalHeight();
    return page && page->hasHeightForWidth() ? page->heightForWidth(width) : sizeHint().height();
}

void BodyView::applyColours()
{
    const bool dark = Theme::isDark(this);
    for (QLabel* hint : {m_noLights, m_noGroups, m_noScenes}) {
        QPalette palette = hint->palette();
        palette.setColor(QPalette::WindowText, Theme::text(dark));
        palette.setColor(QPalette::Link, Theme::link(dark));
        hint->setPalette(palette);
    }
}

void BodyView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        applyColours();
    QStackedWidget::changeEvent(event);
}

void BodyView::onContentChanged()
{
    QWidget* page = nullptr;
    MainPanels panel = m_preferences.activeMainPanel();
    // Switching scenes off takes their tab away; the body falls back to the lights with it.
    if (panel == MainPanels::scenes && !m_preferences.showScenes())
        panel = MainPanels::lights;
    if (m_sessions.size() > 1) {
        BridgeSections*& sections = panel == MainPanels::rooms    ? m_sectionedGroups
                                    : panel == MainPanels::scenes ? m_sectionedScenes
                                                                  : m_sectionedLights;
        if (!sections) {
            const MainPanels shown =
                panel == MainPanels::rooms || panel == MainPanels::scenes ? panel : MainPanels::lights;
            addWidget(sections = new BridgeSections(m_sessions, shown, this));
        }
        setCurrentWidget(sections);
        return;
    }
    if (!m_first)
        return;
    BridgeLink& link = m_first->link();
    BridgeCommands& commands = m_first->commands();
    switch (panel) {
    case MainPanels::rooms:
        if (link.home().groups().isEmpty()) {
            page = m_noGroups;
        } else {
            if (!m_groups)
                addWidget(m_groups = new ListGroups(link, commands, this));
            page = m_groups;
        }
        break;
    case MainPanels::scenes:
        if (link.home().scenes().isEmpty()) {
            page = m_noScenes;
        } else {
            if (!m_scenes)
                addWidget(m_scenes = new ListScenes(link, commands, this));
            page = m_scenes;
        }
        break;
    case MainPanels::lights:
    default: // a stored panel from a newer or damaged settings file
        if (link.home().lights().isEmpty()) {
            page = m_noLights;
        } else {
            if (!m_lights)
                addWidget(m_lights = new ListLights(link, commands, this));
            page = m_lights;
        }
        break;
    }
    setCurrentWidget(page);
}
