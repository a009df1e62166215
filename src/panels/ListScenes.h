#pragma once

#include "panels/ScrollColumn.h"

#include <QStringList>

class AppSettings;
class HueHelper;
class SceneButton;

/// The scenes panel: one `SceneButton` per scene of `AppSettings::scenes`, in stored order. A press recalls
/// that scene through the group of all lights; nothing in `AppSettings` changes until the next refresh.
class ListScenes final : public ScrollColumn
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ListScenes)

public:
    ListScenes(AppSettings& settings, HueHelper& helper, QWidget* parent = nullptr);

    /// The shown buttons, top to bottom.
    QList<SceneButton*> sceneButtons() const;

private:
    void onScenesChanged();
    void onScenePressed(const QString& sceneId);
    void onBridgeConnectedChanged();

    AppSettings& m_settings;
    HueHelper& m_helper;
    QStringList m_shown; // scene id and name of every button, to skip rebuilding for an unchanged list
};
