#pragma once

#include <QWidget>

class GlobalHotkeys;

/// One recorder per shortcut that acts on every room: on, off, brighter, darker, red, blue, white.
class HotkeysEverythingView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HotkeysEverythingView)

public:
    explicit HotkeysEverythingView(GlobalHotkeys& hotkeys, QWidget* parent = nullptr);
};
