#include "preferences/window/PaneStyleController.h"

#include "preferences/window/ChoiceAccessible.h"

#include <QAccessible>
#include <QAction>
#include <QActionGroup>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QToolBar>
#include <QToolButton>

namespace {

const QString toolbarName = QStringLiteral("PreferencesToolbar");
const QString segmentedControlName = QStringLiteral("toolbarSegmentedControl");

QAccessibleInterface* paneButtonAccessible(const QString&, QObject* object)
{
    // A pane button is a tab to assistive technology, selected while its pane shows. Decided by where the
    // button sits, known from its construction on: assistive technology may ask for a button's interface (and
    // keep it) before anything else is set on the button.
    if (object->metaObject() != &QToolButton::staticMetaObject)
        return nullptr;
    auto* button = static_cast<QToolButton*>(object);
    const QWidget* parent = button->parentWidget();
    if (parent && (parent->objectName() == toolbarName || parent->objectName() == segmentedControlName))
        return new ChoiceAccessible(button, QAccessible::PageTab);
    return nullptr;
}

void installPaneButtonAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(paneButtonAccessible);
        return true;
    }();
    Q_UNUSED(installed);
}

/// An expanding blank on each side keeps the pane buttons in the middle of the toolbar.
void addSpacer(QToolBar& toolbar)
{
    auto* spacer = new QWidget(&toolbar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    spacer->setAccessibleName(QString());
    toolbar.addWidget(spacer);
}

} // namespace

ToolbarStyleController::ToolbarStyleController(QToolBar& toolbar, const QList<Pane>& panes, QObject* parent)
    : PaneStyleController(parent)
{
    installPaneButtonAccessibility();
    toolbar.setObjectName(toolbarName);
    toolbar.setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    toolbar.setIconSize(QSize(24, 24));
    auto* group = new QActionGroup(this);
    group->setExclusive(true);
    addSpacer(toolbar);
    for (qsizetype i = 0; i < panes.size(); ++i) {
        auto* item = new QAction(panes.at(i).toolbarIcon, panes.at(i).title, group);
        item->setObjectName(panes.at(i).identifier);
        item->setCheckable(true);
        toolbar.addAction(item);
        // Toolbar buttons take no focus by default; a keyboard user reaches the panes with Tab too.
        if (auto* button = qobject_cast<QAbstractButton*>(toolbar.widgetForAction(item))) {
            button->setObjectName(panes.at(i).identifier + QStringLiteral("PaneButton"));
            button->setFocusPolicy(Qt::TabFocus);
        }
        // Toggled rather than triggered: assistive technology checks the button without clicking it.
        connect(item, &QAction::toggled, this, [this, i](bool checked) {
            if (checked)
                Q_EMIT paneSelected(int(i));
        });
        m_items.append(item);
    }
    addSpacer(toolbar);
}

void ToolbarStyleController::selectTab(int index)
{
    if (index >= 0 && index < m_items.size())
        m_items.at(index)->setChecked(true);
}

SegmentedStyleController::SegmentedStyleController(QToolBar& toolbar, const QList<Pane>& panes,
                                                   QObject* parent)
    : PaneStyleController(parent)
{
    installPaneButtonAccessibility();
    auto* control = new QWidget(&toolbar);
    control->setObjectName(segmentedControlName);
    auto* row = new QHBoxLayout(control);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    auto* group = new QButtonGroup(this);
    group->setExclusive(true);
    for (qsizetype i = 0; i < panes.size(); ++i) {
        auto* segment = new QToolButton(control);
        segment->setObjectName(QStringLiteral("segment-%1").arg(i));
        segment->setText(panes.at(i).title);
        segment->setCheckable(true);
        segment->setFocusPolicy(Qt::TabFocus);
        group->addButton(segment, int(i));
        row->addWidget(segment);
        m_segments.append(segment);
    }
    connect(group, &QButtonGroup::idToggled, this, [this](int id, bool checked) {
        if (checked)
            Q_EMIT paneSelected(id);
    });
    addSpacer(toolbar);
    toolbar.addWidget(control)->setObjectName(QStringLiteral("toolbarSegmentedControlItem"));
    addSpacer(toolbar);
}

void SegmentedStyleController::selectTab(int index)
{
    if (index >= 0 && index < m_segments.size())
        m_segments.at(index)->setChecked(true);
}
