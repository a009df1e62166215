#include "panels/BodyView.h"

#include "panels/ListGroups.h"
#include "panels/ListLights.h"
#include "panels/ListScenes.h"
#include "panels/Theme.h"
#include "state/AppSettings.h"

#include <QEvent>
#include <QLabel>

BodyView::BodyView(AppSettings& settings, HueHelper& helper, QWidget* parent)
    : QStackedWidget(parent), m_settings(settings), m_helper(helper),
      m_noLights(emptyState(noLightsText(), QStringLiteral("NoLights"))),
      m_noGroups(emptyState(noGroupsText(), QStringLiteral("NoGroups"))),
      m_noScenes(emptyState(noScenesText(), QStringLiteral("NoScenes")))
{
    applyColours();
    connect(&m_settings, &AppSettings::lightsChanged, this, &BodyView::onContentChanged);
    connect(&m_settings, &AppSettings::groupsChanged, this, &BodyView::onContentChanged);
    connect(&m_settings, &AppSettings::scenesChanged, this, &BodyView::onContentChanged);
    connect(&m_settings, &AppSettings::activeMainPanelChanged, this, &BodyView::onContentChanged);
    connect(&m_settings, &AppSettings::showScenesChanged, this, &BodyView::onContentChanged);
    onContentChanged();
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

QLabel* BodyView::emptyState(const QString& text, const QString& name)
{
    auto* label = new QLabel(text, this);
    label->setObjectName(name);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    label->setContentsMargins(12, 12, 12, 12);
    addWidget(label);
    return label;
}

void BodyView::applyColours()
{
    for (QLabel* hint : {m_noLights, m_noGroups, m_noScenes}) {
        QPalette palette = hint->palette();
        palette.setColor(QPalette::WindowText, Theme::text(Theme::isDark(this)));
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
    MainPanels panel = m_settings.activeMainPanel();
    // Switching scenes off takes their tab away; the body falls back to the lights with it.
    if (panel == MainPanels::scenes && !m_settings.showScenes())
        panel = MainPanels::lights;
    switch (panel) {
    case MainPanels::rooms:
        if (m_settings.groups().isEmpty()) {
            page = m_noGroups;
        } else {
            if (!m_groups)
                addWidget(m_groups = new ListGroups(m_settings, m_helper, this));
            page = m_groups;
        }
        break;
    case MainPanels::scenes:
        if (m_settings.scenes().isEmpty()) {
            page = m_noScenes;
        } else {
            if (!m_scenes)
                addWidget(m_scenes = new ListScenes(m_settings, m_helper, this));
            page = m_scenes;
        }
        break;
    case MainPanels::lights:
    default: // a stored panel from a newer or damaged settings file
        if (m_settings.lights().isEmpty()) {
            page = m_noLights;
        } else {
            if (!m_lights)
                addWidget(m_lights = new ListLights(m_settings, m_helper, this));
            page = m_lights;
        }
        break;
    }
    setCurrentWidget(page);
}
