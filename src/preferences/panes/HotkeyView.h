#pragma once

#include <QWidget>

class GlobalHotkeys;
class HotkeyActions;
class Preferences;
class QLabel;
class QStackedWidget;
class SegmentedControl;

/// The hotkeys pane: "Everything" (the shortcuts that act on every room) and "Individual Groups" (the five
/// custom shortcuts and their room actions), and the step of the brighter and darker shortcuts. On a desktop
/// without a way to register global shortcuts it says so instead of offering recorders that would do nothing.
class HotkeyView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HotkeyView)

public:
    /// The brightness units of the step choices Small, Medium and Large.
    static constexpr qint64 stepSizes[] = {10, 25, 50};

    HotkeyView(Preferences& preferences, GlobalHotkeys& hotkeys, HotkeyActions& actions,
               QWidget* parent = nullptr);

private:
    void onStepChosen(int index);
    void onKeyIncrementChanged();
    void showAvailability();

    Preferences& m_preferences;
    GlobalHotkeys& m_hotkeys;
    HotkeyActions& m_actions;
    QWidget* m_shortcuts;
    SegmentedControl* m_views;
    QStackedWidget* m_pages;
    SegmentedControl* m_step;
    QLabel* m_unavailable;
};
