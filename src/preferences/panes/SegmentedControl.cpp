#include "preferences/panes/SegmentedControl.h"

#include "preferences/window/ChoiceAccessible.h"

#include <QAccessibleWidget>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPushButton>

namespace {

// Set on each choice before anyone can ask for its accessible interface.
const char* const choiceRoleProperty = "segmentedChoiceRole";

QAccessibleInterface* segmentedAccessible(const QString&, QObject* object)
{
    if (object->metaObject() == &QPushButton::staticMetaObject) {
        const QVariant role = object->property(choiceRoleProperty);
        return role.isValid()
                   ? new ChoiceAccessible(static_cast<QPushButton*>(object), QAccessible::Role(role.toInt()))
                   : nullptr;
    }
    if (object->metaObject() == &SegmentedControl::staticMetaObject) {
        auto* control = static_cast<SegmentedControl*>(object);
        return new QAccessibleWidget(control, control->choiceRole() == QAccessible::PageTab
                                                  ? QAccessible::PageTabList
                                                  : QAccessible::Grouping);
    }
    return nullptr;
}

} // namespace

SegmentedControl::SegmentedControl(const QStringList& titles, QAccessible::Role role, QWidget* parent)
    : QWidget(parent), m_role(role)
{
    static const bool factoryInstalled = [] {
        QAccessible::installFactory(segmentedAccessible);
        return true;
    }();
    Q_UNUSED(factoryInstalled);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* group = new QButtonGroup(this);
    group->setExclusive(true);
    for (const QString& title : titles) {
        // The role first: setting the text already makes assistive technology ask for the button.
        auto* button = new QPushButton;
        button->setProperty(choiceRoleProperty, int(role));
        button->setText(title);
        button->setCheckable(true);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        group->addButton(button, int(m_buttons.size()));
        layout->addWidget(button);
        m_buttons.append(button);
    }
    // Toggled rather than clicked: a screen reader checks the button without clicking it.
    connect(group, &QButtonGroup::idToggled, this, [this](int index, bool checked) {
        paintSelection();
        if (checked)
            Q_EMIT selected(index);
    });
}

void SegmentedControl::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        paintSelection();
}

void SegmentedControl::paintSelection()
{
    for (QAbstractButton* button : std::as_const(m_buttons)) {
        // Only these two roles are set: the rest, and the others' whole palette, follow the window's.
        QPalette selection;
        if (button->isChecked()) {
            selection.setColor(QPalette::Button, palette().color(QPalette::Highlight));
            selection.setColor(QPalette::ButtonText, palette().color(QPalette::HighlightedText));
        }
        button->setPalette(selection);
    }
}

int SegmentedControl::selectedIndex() const
{
    for (qsizetype i = 0; i < m_buttons.size(); ++i) {
        if (m_buttons.at(i)->isChecked())
            return int(i);
    }
    return -1;
}

void SegmentedControl::setSelectedIndex(int index)
{
    const QSignalBlocker blocker(this);
    if (QAbstractButton* button = m_buttons.value(index)) {
        button->setChecked(true);
        return;
    }
    // An exclusive group keeps one checked: let go of it for a moment to show none.
    if (QAbstractButton* checked = m_buttons.value(selectedIndex())) {
        checked->group()->setExclusive(false);
        checked->setChecked(false);
        checked->group()->setExclusive(true);
    }
}
