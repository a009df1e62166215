#pragma once

#include <QAccessible>
#include <QList>
#include <QStringList>
#include <QWidget>

class QAbstractButton;

/// A row of joined choices of which one is selected, like a segmented control: each choice is a checkable
/// button; the arrow keys move between them. To assistive technology the choices are radio buttons in a
/// group, or page tabs in a tab list where the choice switches what is shown below.
class SegmentedControl final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SegmentedControl)

public:
    /// `role` is QAccessible::RadioButton or QAccessible::PageTab.
    SegmentedControl(const QStringList& titles, QAccessible::Role role, QWidget* parent = nullptr);

    /// -1 while none is selected.
    int selectedIndex() const;
    /// Selects without telling (the shown value changed elsewhere); -1 selects none.
    void setSelectedIndex(int index);
    QAbstractButton* button(int index) const { return m_buttons.value(index); }
    QAccessible::Role choiceRole() const { return m_role; }

Q_SIGNALS:
    /// The user chose the choice at `index`.
    void selected(int index);

protected:
    void changeEvent(QEvent* event) override;

private:
    /// The selected choice in the selection colour, so it stands out in the light and the dark appearance.
    void paintSelection();

    QAccessible::Role m_role;
    QList<QAbstractButton*> m_buttons;
};
