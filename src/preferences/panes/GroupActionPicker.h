#pragma once

#include "hotkeys/HotkeyActions.h"

#include <QComboBox>
#include <QList>

/// The choice of what one custom shortcut does: "(No action)", or on, off, brighter or darker for one room of
/// one bridge. A choice is stored at once and used at the next press. The list follows the bridges served
/// and the rooms each reports; it shows each room's choices under a heading of its own (which cannot be
/// picked), and a filter narrows it to the rooms whose heading holds the typed text. Each choice keeps its
/// whole title ("Bedroom Brighter") for the closed box and for screen readers; the open list shows the action
/// alone under its heading.
class GroupActionPicker final : public QComboBox
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(GroupActionPicker)

public:
    /// `dropdownIndex` is the slot, 0 to 4, that the custom shortcut of the same row reads.
    GroupActionPicker(HotkeyActions& actions, int dropdownIndex, QWidget* parent = nullptr);

    /// The stored choice's id, as stored.
    QString selectedAction() const { return m_selectedAction; }
    QList<GroupActionOption> availableGroupActions() const { return m_availableGroupActions; }
    /// Shows only the rooms whose heading holds @p foldedText (see FilterField::folded); the choice made
    /// stays listed.
    void setFilter(const QString& foldedText);

protected:
    void hidePopup() override;

private:
    void onActivated(int index);
    /// Builds the list again when the rooms changed in a way it shows, never while it is open.
    void rebuild();
    void applyFilter();

    HotkeyActions& m_actions;
    int m_dropdownIndex;
    QString m_selectedAction;
    QList<GroupActionOption> m_availableGroupActions;
    QString m_filter;
    bool m_rebuildWhenClosed = false;
};
