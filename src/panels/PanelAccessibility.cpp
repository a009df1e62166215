#include "panels/PanelAccessibility.h"

#include "panels/PanelControl.h"
#include "panels/PanelTab.h"

#include <QAccessibleWidget>

#include <cmath>

namespace {

/// A control as a slider: its value, range and step, and setting the value as the user would.
class ControlAccessible final : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit ControlAccessible(PanelControl* control) : QAccessibleWidget(control, QAccessible::Slider) {}

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Value)
            return QString::number(std::round(control()->accessibleValue()));
        return QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return control()->accessibleValue(); }
    void setCurrentValue(const QVariant& value) override
    {
        bool ok = false;
        const double number = value.toDouble(&ok);
        if (ok && std::isfinite(number))
            control()->setAccessibleValue(number);
    }
    QVariant maximumValue() const override { return control()->accessibleMaximum(); }
    QVariant minimumValue() const override { return 0.0; }
    QVariant minimumStepSize() const override { return control()->accessibleStep(); }

private:
    PanelControl* control() const { return static_cast<PanelControl*>(widget()); }
};

/// A panel tab: pressing it shows its panel; it is selected while its panel shows.
class TabAccessible final : public QAccessibleWidget
{
public:
    explicit TabAccessible(PanelTab* tab) : QAccessibleWidget(tab, QAccessible::PageTab) {}

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = tab()->isActive();
        return state;
    }

    QStringList actionNames() const override
    {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }

    void doAction(const QString& action) override
    {
        if (action == pressAction())
            tab()->click();
        else
            QAccessibleWidget::doAction(action);
    }

private:
    PanelTab* tab() const { return static_cast<PanelTab*>(widget()); }
};

QAccessibleInterface* createInterface(const QString&, QObject* object)
{
    if (auto* control = qobject_cast<PanelControl*>(object))
        return new ControlAccessible(control);
    if (auto* tab = qobject_cast<PanelTab*>(object))
        return new TabAccessible(tab);
    return nullptr;
}

} // namespace

namespace PanelAccessibility {

void install()
{
    static bool installed = false;
    if (installed)
        return;
    installed = true;
    QAccessible::installFactory(createInterface);
}

} // namespace PanelAccessibility
