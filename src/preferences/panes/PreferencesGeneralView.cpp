#include "preferences/panes/PreferencesGeneralView.h"

#include "login/StartAtLogin.h"
#include "preferences/panes/PaneWidgets.h"
#include "preferences/panes/PreferencesInformationView.h"
#include "state/Preferences.h"
#include "state/ProductLinks.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

PreferencesGeneralView::PreferencesGeneralView(Preferences& preferences, StartAtLogin& startAtLogin,
                                               QList<AppIconChoice> icons, const ProductLinks& links,
                                               std::function<void(const QUrl&)> openUrl, QWidget* parent)
    : QWidget(parent), m_preferences(preferences), m_startAtLogin(startAtLogin), m_icons(std::move(icons)),
      m_runAtStart(new QCheckBox(tr("Run at start"), this)),
      m_colorBars(new QCheckBox(tr("Show color bars for rooms"), this)),
      m_showZones(new QCheckBox(tr("Show zones"), this)),
      m_showScenes(new QCheckBox(tr("Show scene panel"), this)),
      m_notifications(new QCheckBox(tr("Notifications"), this)), m_appIcon(new QComboBox(this))
{
    m_runAtStart->setObjectName(QStringLiteral("runAtStart"));
    m_colorBars->setObjectName(QStringLiteral("showColorBars"));
    m_showZones->setObjectName(QStringLiteral("showZones"));
    m_showScenes->setObjectName(QStringLiteral("showScenes"));
    m_notifications->setObjectName(QStringLiteral("notifications"));
    m_notifications->setToolTip(
        tr("Tell the desktop when a timer went off, a bridge was lost or found again, "
           "or refused a change while the window was closed."));
    m_appIcon->setObjectName(QStringLiteral("appIconPicker"));
    m_appIcon->setAccessibleName(tr("App icon"));
    m_runAtStart->setToolTip(tr("Start Glowdeck when you log in."));

    for (const AppIconChoice& choice : std::as_const(m_icons))
        m_appIcon->addItem(choice.icon, choice.title, choice.name);
    m_appIcon->setIconSize(QSize(22, 22));
    m_appIcon->setMinimumWidth(100);
    m_appIcon->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    auto* iconLabel = new QLabel(tr("App icon"), this);
    iconLabel->setBuddy(m_appIcon);
    auto* iconRow = new QHBoxLayout;
    iconRow->addWidget(iconLabel);
    iconRow->addWidget(m_appIcon);
    iconRow->addStretch();

    auto* rule = new QFrame(this);
    rule->setFrameShape(QFrame::HLine);
    rule->setFrameShadow(QFrame::Sunken);

    auto* information = new PreferencesInformationView(links.help, links.feedback, std::move(openUrl), this);
    connect(information, &PreferencesInformationView::debugInformationRequested, this,
            &PreferencesGeneralView::debugInformationRequested);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(PaneWidgets::margin, PaneWidgets::margin, PaneWidgets::margin,
                               PaneWidgets::margin);
    layout->setSpacing(10);
    layout->addWidget(m_runAtStart);
    layout->addWidget(m_colorBars);
    layout->addWidget(m_showZones);
    layout->addWidget(m_showScenes);
    layout->addWidget(m_notifications);
    layout->addLayout(iconRow);
    layout->addSpacing(4);
    layout->addWidget(rule);
    layout->addWidget(information);
    setMinimumWidth(PaneWidgets::contentWidth + 2 * PaneWidgets::margin);

    connect(m_runAtStart, &QCheckBox::toggled, this, &PreferencesGeneralView::onRunAtStartToggled);
    connect(m_colorBars, &QCheckBox::toggled, &m_preferences, &Preferences::setShowColorBarsForRooms);
    connect(m_showZones, &QCheckBox::toggled, &m_preferences, &Preferences::setShowZones);
    connect(m_showScenes, &QCheckBox::toggled, this, &PreferencesGeneralView::onShowScenesToggled);
    connect(m_notifications, &QCheckBox::toggled, &m_preferences, &Preferences::setNotifiesEvents);
    connect(m_appIcon, &QComboBox::activated, this, &PreferencesGeneralView::onIconChosen);
    connect(&m_startAtLogin, &StartAtLogin::changed, this, [this](bool enabled) {
        const QSignalBlocker blocker(m_runAtStart);
        m_runAtStart->setChecked(enabled);
    });
    m_preferences.whenChanged({SettingsKeys::showColorBarsForRooms, SettingsKeys::showZones,
                               SettingsKeys::showScenes, SettingsKeys::notifyEvents, SettingsKeys::appIcon},
                              this, &PreferencesGeneralView::onSettingsChanged);
    onSettingsChanged();
}

void PreferencesGeneralView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    const QSignalBlocker blocker(m_runAtStart);
    m_runAtStart->setChecked(m_startAtLogin.isEnabled());
}

void PreferencesGeneralView::onRunAtStartToggled(bool checked)
{
    // What the platform says afterwards is what the box shows (the changed signal sets it).
    m_startAtLogin.setEnabled(checked);
}

void PreferencesGeneralView::onShowScenesToggled(bool checked)
{
    m_preferences.setShowScenes(checked);
    // The scenes panel is no longer offered: the drop-down window goes back to the lights.
    if (!checked && m_preferences.activeMainPanel() == MainPanels::scenes)
        m_preferences.setActiveMainPanel(MainPanels::lights);
}

void PreferencesGeneralView::onIconChosen(int index)
{
    const QString name = m_appIcon->itemData(index).toString();
    if (name.isEmpty())
        return;
    m_preferences.setAppIcon(name);
}

void PreferencesGeneralView::onSettingsChanged()
{
    const QSignalBlocker colorBars(m_colorBars);
    const QSignalBlocker showScenes(m_showScenes);
    const QSignalBlocker showZones(m_showZones);
    const QSignalBlocker notifications(m_notifications);
    m_colorBars->setChecked(m_preferences.showColorBarsForRooms());
    m_showZones->setChecked(m_preferences.showZones());
    m_showScenes->setChecked(m_preferences.showScenes());
    m_notifications->setChecked(m_preferences.notifiesEvents());
    m_appIcon->setCurrentIndex(std::max(0, m_appIcon->findData(m_preferences.appIcon())));
}
