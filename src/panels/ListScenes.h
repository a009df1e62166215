#pragma once

#include "panels/FilterField.h"

#include <QStringList>
#include <QWidget>

class BridgeLink;
class BridgeCommands;
class QLabel;
class QLineEdit;
class SceneButton;
class ScrollColumn;
class SceneColumn;

/// The scenes panel: one `SceneButton` per scene of `BridgeHome::scenes`, under a heading per room (in the
/// rooms' order, then the zones, then "Other scenes"). A home with only scenes of no room shows no headings.
/// Above more than `filterThreshold` scenes a filter field narrows the list to the scenes whose name, or
/// whose room's name, holds the typed text; Escape in the field clears it. A press recalls that scene through
/// the group of all lights; nothing in the bridge's `BridgeHome` changes until the next refresh.
class ListScenes final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ListScenes)

public:
    static constexpr int filterThreshold = FilterField::threshold;

    ListScenes(BridgeLink& settings, BridgeCommands& commands, QWidget* parent = nullptr);

    /// The buttons, top to bottom, including those the filter hides.
    QList<SceneButton*> sceneButtons() const;
    /// The room headings, top to bottom, including those the filter hides.
    QList<QLabel*> headings() const;
    /// The filter field, above the scrolling list; hidden while there are `filterThreshold` scenes or fewer.
    QLineEdit* filterField() const { return m_filter; }
    /// The scrolling list of headings and buttons.
    ScrollColumn* column() const;
    /// The height that shows the filter and every row without scrolling.
    int naturalHeight() const;
    /// Inside a column that scrolls: the list never scrolls on its own.
    void setEmbedded();

private:
    void onScenesChanged();
    void onScenePressed(const QString& sceneId);
    void onBridgeConnectedChanged();
    void applyFilter();

    BridgeLink& m_settings;
    BridgeCommands& m_commands;
    FilterField* m_filter;
    SceneColumn* m_column;
    QLabel* m_noMatch;   ///< the last row while the filter hides every scene
    QStringList m_shown; // heading, scene id and name of every row, to skip rebuilding for an unchanged list
};
