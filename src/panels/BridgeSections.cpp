#include "panels/BridgeSections.h"

#include "panels/ListGroups.h"
#include "panels/ListLights.h"
#include "panels/ListScenes.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int headingSpacing = 2;
constexpr int sectionSpacing = 6;

bool hasNothingToList(const BridgeHome& home, MainPanels panel)
{
    switch (panel) {
    case MainPanels::rooms:
        return home.groups().isEmpty();
    case MainPanels::scenes:
        return home.scenes().isEmpty();
    case MainPanels::lights:
        break;
    }
    return home.lights().isEmpty();
}

} // namespace

BridgeSection::BridgeSection(BridgeSessions& sessions, BridgeSession& session, MainPanels panel,
                             QWidget* parent)
    : QWidget(parent), m_sessions(sessions), m_session(session), m_panel(panel),
      m_heading(new QToolButton(this)), m_empty(new QLabel(this)), m_layout(new QVBoxLayout(this))
{
    setObjectName(QStringLiteral("bridgeSection"));
    m_heading->setObjectName(QStringLiteral("bridgeSectionHeading"));
    m_heading->setCheckable(true);
    m_heading->setChecked(true);
    m_heading->setAutoRaise(true);
    m_heading->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_heading->setArrowType(Qt::DownArrow);
    m_heading->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    QFont bold = m_heading->font();
    bold.setBold(true);
    m_heading->setFont(bold);
    m_empty->setObjectName(QStringLiteral("bridgeSectionEmpty"));
    m_empty->setWordWrap(true);
    m_empty->setContentsMargins(12, 2, 12, 2);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(headingSpacing);
    m_layout->addWidget(m_heading);
    m_layout->addWidget(m_empty);

    connect(m_heading, &QToolButton::toggled, this, [this](bool open) {
        m_heading->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
        onContentChanged();
    });
    BridgeLink& link = m_session.link();
    const auto renameAll = [this] {
        if (auto* sections =
                qobject_cast<BridgeSections*>(parentWidget() ? parentWidget()->parentWidget() : nullptr))
            sections->rename();
        else
            onNameChanged();
    };
    connect(&link, &BridgeLink::bridgeContactChanged, this, renameAll);
    connect(&link, &BridgeLink::hueIPChanged, this, renameAll);
    BridgeHome& home = link.home();
    for (auto changed : {&BridgeHome::lightsChanged, &BridgeHome::groupsChanged, &BridgeHome::scenesChanged,
                         &BridgeHome::bridgeConnectedChanged})
        connect(&home, changed, this, &BridgeSection::onContentChanged);
    onNameChanged();
    onContentChanged();
}

bool BridgeSection::isFolded() const
{
    return !m_heading->isChecked();
}

void BridgeSection::onNameChanged()
{
    const QString name = m_sessions.nameOf(m_session);
    m_heading->setText(name);
    m_heading->setAccessibleName(tr("Bridge %1").arg(name));
    m_heading->setToolTip(tr("Show or hide the bridge %1").arg(name));
}

void BridgeSection::onContentChanged()
{
    const BridgeLink& link = m_session.link();
    const bool nothing = hasNothingToList(link.home(), m_panel);
    if (!nothing && !m_list) {
        BridgeCommands& commands = m_session.commands();
        BridgeLink& owner = m_session.link();
        switch (m_panel) {
        case MainPanels::rooms: {
            auto* groups = new ListGroups(owner, commands, this);
            groups->setEmbedded();
            m_list = groups;
            break;
        }
        case MainPanels::scenes: {
            auto* scenes = new ListScenes(owner, commands, this);
            scenes->setEmbedded();
            m_list = scenes;
            break;
        }
        case MainPanels::lights: {
            auto* lights = new ListLights(owner, commands, this);
            lights->setEmbedded();
            m_list = lights;
            break;
        }
        }
        m_layout->addWidget(m_list);
    }
    const bool open = m_heading->isChecked();
    if (m_list)
        m_list->setVisible(open && !nothing);
    if (nothing) {
        const bool answering = link.home().bridgeConnected() || link.hueKey().isEmpty();
        const QString text = !answering                      ? tr("This bridge does not answer.")
                             : m_panel == MainPanels::rooms  ? tr("No rooms on this bridge.")
                             : m_panel == MainPanels::scenes ? tr("No scenes on this bridge.")
                                                             : tr("No lights on this bridge.");
        m_empty->setText(text);
    }
    m_empty->setVisible(open && nothing);
}

BridgeSections::BridgeSections(BridgeSessions& sessions, MainPanels panel, QWidget* parent)
    : QScrollArea(parent), m_sessions(sessions), m_panel(panel)
{
    setObjectName(QStringLiteral("bridgeSections"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    viewport()->setAutoFillBackground(false);
    auto* content = new QWidget;
    content->setAutoFillBackground(false);
    m_column = new QVBoxLayout(content);
    m_column->setContentsMargins(0, 4, 0, 4);
    m_column->setSpacing(sectionSpacing);
    m_column->addStretch(1);
    setWidget(content);
    connect(&m_sessions, &BridgeSessions::added, this, &BridgeSections::rebuild);
    // Sent while the leaving session still lives: its section goes before it does.
    connect(&m_sessions, &BridgeSessions::removed, this, [this](BridgeSession* leaving) {
        for (BridgeSection* section : std::as_const(m_sections)) {
            if (&section->session() == leaving) {
                m_sections.removeOne(section);
                delete section;
                break;
            }
        }
        // Once it has gone, a name it repeated stands alone again.
        QMetaObject::invokeMethod(this, &BridgeSections::rename, Qt::QueuedConnection);
    });
    rebuild();
}

void BridgeSections::rebuild()
{
    const QList<BridgeSession*> sessions = m_sessions.all();
    int index = 0;
    for (BridgeSession* session : sessions) {
        const auto same = [session](const BridgeSection* s) { return &s->session() == session; };
        if (std::none_of(m_sections.cbegin(), m_sections.cend(), same)) {
            auto* section = new BridgeSection(m_sessions, *session, m_panel, widget());
            m_column->insertWidget(index, section);
            m_sections.insert(index, section);
        }
        ++index;
    }
    rename();
}

void BridgeSections::rename()
{
    for (BridgeSection* section : std::as_const(m_sections))
        section->onNameChanged();
}

int BridgeSections::naturalHeight() const
{
    return widget()->sizeHint().height() + 2 * frameWidth();
}
