#pragma once

#include <QWidget>

class GlobalHotkeys;
class HotkeyActions;

/// The five custom shortcuts, each with a recorder and the picker of what it does to which room.
class HotkeysIndividualView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HotkeysIndividualView)

public:
    HotkeysIndividualView(GlobalHotkeys& hotkeys, HotkeyActions& actions, QWidget* parent = nullptr);
};
