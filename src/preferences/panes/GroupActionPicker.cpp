#include "preferences/panes/GroupActionPicker.h"

#include "panels/FilterField.h"

#include <QAbstractItemView>
#include <QListView>
#include <QStandardItemModel>
#include <QStyledItemDelegate>

namespace {

constexpr int actionRole = Qt::UserRole + 1;  // the action alone, shown under its room's heading
constexpr int sectionRole = Qt::UserRole + 2; // the heading a choice belongs to, for the filter

/// Draws a choice as its action, set in under its heading, and a heading in bold.
class SectionDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const QString action = index.data(actionRole).toString();
        if (!action.isEmpty()) {
            option->text = action;
            option->rect.adjust(indent, 0, 0, 0);
        } else if (!index.data(sectionRole).toString().isEmpty()) {
            // Disabled so that the arrow keys pass over it, yet drawn as plain text.
            option->font.setBold(true);
            option->state |= QStyle::State_Enabled;
            option->palette.setCurrentColorGroup(QPalette::Active);
        }
    }

private:
    static constexpr int indent = 16;
};

} // namespace

GroupActionPicker::GroupActionPicker(HotkeyActions& actions, int dropdownIndex, QWidget* parent)
    : QComboBox(parent), m_actions(actions), m_dropdownIndex(dropdownIndex),
      m_selectedAction(actions.currentChoice(dropdownIndex))
{
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    setMinimumContentsLength(18);
    view()->setItemDelegate(new SectionDelegate(this));
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
    auto* model = qobject_cast<QStandardItemModel*>(this->model());
    QString section;
    for (const GroupActionOption& option : options) {
        if (!option.section.isEmpty() && option.section != section) {
            section = option.section;
            // A heading names the room; it is not a choice.
            auto* heading = new QStandardItem(section);
            heading->setFlags(Qt::NoItemFlags);
            heading->setData(section, sectionRole);
            model->appendRow(heading);
        }
        addItem(option.title, option.id);
        setItemData(count() - 1, option.action, actionRole);
        setItemData(count() - 1, option.section, sectionRole);
    }
    int selected = findData(shown);
    if (selected < 0) {
        // A room the bridge does not list (yet, or any more): the choice is kept and shown as it is stored.
        addItem(tr("%1 (room not found)").arg(m_selectedAction), m_selectedAction);
        selected = count() - 1;
    }
    setCurrentIndex(selected);
    applyFilter();
}

void GroupActionPicker::setFilter(const QString& foldedText)
{
    if (m_filter == foldedText)
        return;
    m_filter = foldedText;
    applyFilter();
}

void GroupActionPicker::applyFilter()
{
    auto* list = qobject_cast<QListView*>(view());
    if (!list)
        return;
    for (int row = 0; row < count(); ++row) {
        const QString section = itemData(row, sectionRole).toString();
        const bool shown =
            section.isEmpty() || row == currentIndex() || FilterField::matches(section, m_filter);
        list->setRowHidden(row, !shown);
    }
}
