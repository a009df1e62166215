#include "preferences/panes/HotkeysIndividualView.h"

#include "hotkeys/HotkeyActions.h"
#include "hotkeys/HotkeyNames.h"
#include "hotkeys/recorder/RecorderField.h"
#include "panels/FilterField.h"
#include "preferences/panes/GroupActionPicker.h"
#include "preferences/panes/PaneWidgets.h"

#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

HotkeysIndividualView::HotkeysIndividualView(GlobalHotkeys& hotkeys, HotkeyActions& actions, QWidget* parent)
    : QWidget(parent)
{
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(10);
    grid->addWidget(PaneWidgets::subheading(tr("Shortcut"), this), 0, 1);
    grid->addWidget(PaneWidgets::subheading(tr("Room action"), this), 0, 2);
    // Many rooms make long lists: the filter narrows every picker to the rooms it names.
    auto* filter = new FilterField(tr("Filter rooms"), this);
    filter->setObjectName(QStringLiteral("roomActionFilter"));
    filter->setAccessibleDescription(tr("Type part of a room's name to shorten the lists of room actions."));
    QList<GroupActionPicker*> pickers;
    for (int number = 1; number <= HotkeyNames::customGroupCount; ++number) {
        const GlobalHotkeys::Name& name = HotkeyNames::customGroup(number);
        auto* recorder = new RecorderField(hotkeys, name, this);
        recorder->setObjectName(name.rawValue);
        recorder->setAccessibleName(tr("Shortcut %1").arg(number));
        // The shortcut numbered 1 for the user reads slot 0, and so on.
        auto* picker = new GroupActionPicker(actions, HotkeyActions::slotOfCustomShortcut(number), this);
        picker->setObjectName(QStringLiteral("groupActionPicker%1").arg(number));
        picker->setAccessibleName(tr("Room action %1").arg(number));
        pickers.append(picker);
        // On Linux a combo box's name is its current text; screen readers name it by its label instead.
        auto* label = new QLabel(QString::number(number), this);
        label->setAccessibleName(tr("Room action %1").arg(number));
        label->setBuddy(picker);
        grid->addWidget(label, number, 0, Qt::AlignRight);
        grid->addWidget(recorder, number, 1);
        grid->addWidget(picker, number, 2);
    }
    grid->setColumnStretch(2, 1);
    connect(filter, &FilterField::textChanged, this, [filter, pickers] {
        for (GroupActionPicker* picker : pickers)
            picker->setFilter(filter->folded());
    });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(PaneWidgets::wrappedText(
        tr("Each of these does one thing to one room. The rooms come from your bridges."), this));
    layout->addWidget(filter);
    layout->addLayout(grid);
    layout->addStretch();
}
