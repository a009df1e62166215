#pragma once

#include <QWidget>

class BridgeLink;
class GlobalHotkeys;
class HotkeyActions;

/// The five custom shortcuts, each with a recorder and the picker of what it does to which room.
class HotkeysIndividualView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HotkeysIndividualView)

public:
    HotkeysIndividualView(BridgeLink& settings, GlobalHotkeys& hotkeys, HotkeyActions& actions,
                          QWidget* parent = nullptr);
};
