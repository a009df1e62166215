#include "preferences/panes/HotkeysEverythingView.h"

#include "hotkeys/HotkeyNames.h"
#include "hotkeys/recorder/RecorderField.h"
#include "preferences/panes/PaneWidgets.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

HotkeysEverythingView::HotkeysEverythingView(GlobalHotkeys& hotkeys, QWidget* parent) : QWidget(parent)
{
    const QStringList labels{tr("All on"), tr("All off"), tr("Brighter"), tr("Darker"),
                             tr("Red"),    tr("Blue"),    tr("White")};
    auto* form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form->setFormAlignment(Qt::AlignHCenter | Qt::AlignTop);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    const QList<GlobalHotkeys::Name>& names = HotkeyNames::everything();
    for (qsizetype i = 0; i < names.size(); ++i) {
        auto* recorder = new RecorderField(hotkeys, names.at(i), this);
        recorder->setObjectName(names.at(i).rawValue);
        recorder->setAccessibleName(labels.at(i));
        auto* label = new QLabel(labels.at(i), this);
        label->setBuddy(recorder);
        form->addRow(label, recorder);
    }
    // Not an action on the rooms, but Glowdeck's own door from the keyboard.
    auto* open = new RecorderField(hotkeys, HotkeyNames::openGlowdeck(), this);
    open->setObjectName(HotkeyNames::openGlowdeck().rawValue);
    open->setAccessibleName(tr("Open Glowdeck"));
    auto* openLabel = new QLabel(tr("Open Glowdeck"), this);
    openLabel->setBuddy(open);
    form->addRow(openLabel, open);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(PaneWidgets::wrappedText(
        tr("These act on every room at once, from any application. The last opens or closes Glowdeck's "
           "window."),
        this));
    layout->addLayout(form);
    layout->addStretch();
}
