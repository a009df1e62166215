#pragma once

#include <QAbstractButton>
#include <QAccessibleWidget>

/// A checkable button that offers one choice among several: to assistive technology a radio button that is
/// checked, or a page tab that is selected, rather than the check box a checkable button would otherwise be.
class ChoiceAccessible final : public QAccessibleWidget
{
public:
    /// `role` is QAccessible::RadioButton or QAccessible::PageTab.
    ChoiceAccessible(QAbstractButton* button, QAccessible::Role role) : QAccessibleWidget(button, role) {}

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? QString(button()->text()).remove(u'&')
                                         : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        if (role() == QAccessible::PageTab) {
            state.selectable = true;
            state.selected = button()->isChecked();
        } else {
            state.checkable = true;
            state.checked = button()->isChecked();
        }
        return state;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override
    {
        if (name == pressAction())
            button()->click();
    }

private:
    QAbstractButton* button() const { return static_cast<QAbstractButton*>(widget()); }
};
