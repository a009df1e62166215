#include "preferences/panes/HotkeyView.h"

#include "hotkeys/GlobalHotkeys.h"
#include "hotkeys/HotkeyActions.h"
#include "preferences/panes/HotkeysEverythingView.h"
#include "preferences/panes/HotkeysIndividualView.h"
#include "preferences/panes/PaneWidgets.h"
#include "preferences/panes/SegmentedControl.h"
#include "state/Preferences.h"
#include "state/SettingsKeys.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

constexpr int stepControlWidth = 200;

} // namespace

HotkeyView::HotkeyView(Preferences& preferences, GlobalHotkeys& hotkeys, HotkeyActions& actions,
                       QWidget* parent)
    : QWidget(parent), m_preferences(preferences), m_hotkeys(hotkeys), m_actions(actions),
      m_shortcuts(new QWidget(this)),
      m_views(new SegmentedControl({tr("Everything"), tr("Individual groups")}, QAccessible::PageTab,
                                   m_shortcuts)),
      m_pages(new QStackedWidget(m_shortcuts)),
      m_step(new SegmentedControl({tr("Small"), tr("Medium"), tr("Large")}, QAccessible::RadioButton,
                                  m_shortcuts)),
      m_unavailable(new QLabel(this))
{
    m_views->setObjectName(QStringLiteral("hotkeyViews"));
    m_views->setAccessibleName(tr("Shortcuts"));
    m_step->setObjectName(QStringLiteral("stepSize"));
    m_step->setAccessibleName(tr("Step size"));
    m_step->setFixedWidth(stepControlWidth);

    m_pages->addWidget(new HotkeysEverythingView(hotkeys, m_pages));
    m_pages->addWidget(new HotkeysIndividualView(hotkeys, actions, m_pages));
    m_views->setSelectedIndex(0);

    auto* stepLabel = new QLabel(tr("Step size"), m_shortcuts);
    stepLabel->setBuddy(m_step->button(0));
    auto* stepRow = new QHBoxLayout;
    stepRow->addWidget(stepLabel);
    stepRow->addWidget(m_step);
    stepRow->addStretch();
    auto* viewsRow = new QHBoxLayout;
    viewsRow->addStretch();
    viewsRow->addWidget(m_views);
    viewsRow->addStretch();

    auto* shortcutsLayout = new QVBoxLayout(m_shortcuts);
    shortcutsLayout->setContentsMargins(0, 0, 0, 0);
    shortcutsLayout->setSpacing(12);
    shortcutsLayout->addLayout(viewsRow);
    shortcutsLayout->addWidget(m_pages);
    shortcutsLayout->addLayout(stepRow);

    m_unavailable->setObjectName(QStringLiteral("shortcutsUnavailable"));
    m_unavailable->setWordWrap(true);
    m_unavailable->setMinimumWidth(PaneWidgets::contentWidth);
    m_unavailable->setMaximumWidth(PaneWidgets::contentWidth);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(PaneWidgets::margin, PaneWidgets::margin, PaneWidgets::margin,
                               PaneWidgets::margin);
    layout->setSpacing(12);
    layout->addWidget(PaneWidgets::heading(tr("Hotkey settings"), this));
    layout->addWidget(m_unavailable);
    layout->addWidget(m_shortcuts);
    layout->addStretch();
    setMinimumWidth(PaneWidgets::contentWidth + 2 * PaneWidgets::margin);

    connect(m_views, &SegmentedControl::selected, m_pages, &QStackedWidget::setCurrentIndex);
    connect(m_step, &SegmentedControl::selected, this, &HotkeyView::onStepChosen);
    m_preferences.whenChanged({SettingsKeys::keyIncrement}, this, &HotkeyView::onKeyIncrementChanged);
    connect(&m_hotkeys, &GlobalHotkeys::unavailable, this, &HotkeyView::showAvailability);
    onKeyIncrementChanged();
    showAvailability();
}

void HotkeyView::onStepChosen(int index)
{
    if (index >= 0 && index < int(std::size(stepSizes)))
        m_actions.storeStep(stepSizes[index]);
}

void HotkeyView::onKeyIncrementChanged()
{
    int index = -1; // a step set by hand in the settings file is none of the three
    for (int i = 0; i < int(std::size(stepSizes)); ++i) {
        if (stepSizes[i] == m_preferences.keyIncrement())
            index = i;
    }
    m_step->setSelectedIndex(index);
}

void HotkeyView::showAvailability()
{
    const bool available = m_hotkeys.isAvailable();
    m_shortcuts->setVisible(available);
    m_unavailable->setVisible(!available);
    if (available)
        return;
    const QString reason = m_hotkeys.unavailableReason();
    QString text = tr(
        "<p><b>Global shortcuts are not available on this desktop.</b></p>"
        "<p>Glowdeck registers them with X11 or, on Wayland, through the desktop portal's global shortcuts "
        "service, and found neither here. Your desktop's own keyboard settings can run <tt>glowdeckctl</tt> "
        "commands instead, such as <tt>glowdeckctl all-off</tt>.</p>");
    if (!reason.isEmpty())
        text += QStringLiteral("<p><small>%1</small></p>").arg(tr("Details: %1").arg(reason.toHtmlEscaped()));
    m_unavailable->setText(text);
}
