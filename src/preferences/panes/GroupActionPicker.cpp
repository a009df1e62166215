#include "preferences/panes/GroupActionPicker.h"

#include <QAbstractItemView>

GroupActionPicker::GroupActionPicker(HotkeyActions& actions, int dropdownIndex, QWidget* parent)
    : QComboBox(parent), m_actions(actions), m_dropdownIndex(dropdownIndex),
      m_selectedAction(actions.currentChoice(dropdownIndex))
{
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    setMinimumContentsLength(18);
    connect(this, &QComboBox::activated, this, &GroupActionPicker::onActivated);
    // Every refresh brings new records; the list only changes with the rooms' ids and names.
    connect(&m_actions, &HotkeyActions::optionsChanged, this, &GroupActionPicker::rebuild);
    rebuild();
}

void GroupActionPicker::hidePopup()
{
    QComboBox::hidePopup();
    if (m_rebuildWhenClosed)
        rebuild();
}

void GroupActionPicker::onActivated(int index)
{
    const QString id = itemData(index).toString();
    if (id.isEmpty() || id == m_selectedAction)
        return;
    m_actions.storeChoice(m_dropdownIndex, id);
    m_selectedAction = id;
}

void GroupActionPicker::rebuild()
{
    if (view()->isVisible()) {
        m_rebuildWhenClosed = true;
        return;
    }
    m_rebuildWhenClosed = false;
    const QList<GroupActionOption> options = m_actions.options();
    // A choice stored without a bridge id shows as the first bridge's, which may be another one now.
    const QString shown = m_actions.optionOf(m_selectedAction);
    if (options == m_availableGroupActions && count() > 0 && itemData(currentIndex()).toString() == shown)
        return;
    m_availableGroupActions = options;

    const QSignalBlocker blocker(this);
    clear();
    for (const GroupActionOption& option : options)
        addItem(option.title, option.id);
    int selected = findData(shown);
    if (selected < 0) {
        // A room the bridge does not list (yet, or any more): the choice is kept and shown as it is stored.
        addItem(tr("%1 (room not found)").arg(m_selectedAction), m_selectedAction);
        selected = count() - 1;
    }
    setCurrentIndex(selected);
}
