#include "panels/ListScenes.h"

#include "bridge/HueHelper.h"
#include "panels/SceneButton.h"
#include "state/AppSettings.h"

#include <QTimer>

namespace {
constexpr int padding = 5;
constexpr int buttonSpacing = 5;
} // namespace

ListScenes::ListScenes(AppSettings& settings, HueHelper& helper, QWidget* parent)
    : ScrollColumn(padding, buttonSpacing, parent), m_settings(settings), m_helper(helper)
{
    connect(&m_settings, &AppSettings::scenesChanged, this, &ListScenes::onScenesChanged);
    connect(&m_settings, &AppSettings::bridgeConnectedChanged, this, &ListScenes::onBridgeConnectedChanged);
    onScenesChanged();
}

QList<SceneButton*> ListScenes::sceneButtons() const
{
    QList<SceneButton*> result;
    for (QWidget* button : rows())
        result.append(static_cast<SceneButton*>(button));
    return result;
}

void ListScenes::onScenesChanged()
{
    const QList<HueScene> scenes = m_settings.scenes();
    QStringList shown;
    for (const HueScene& scene : scenes)
        shown << scene.scene_id << scene.name;
    if (shown == m_shown && rows().size() == scenes.size())
        return;
    m_shown = shown;

    const QList<QWidget*> old = rows();
    QList<QWidget*> buttons;
    for (const HueScene& scene : scenes) {
        auto* button = new SceneButton(scene.name, content());
        button->setDimmed(!m_settings.bridgeConnected());
        // Scenes with the same name stay apart: each button carries its own id.
        connect(button, &SceneButton::clicked, this,
                [this, sceneId = scene.scene_id] { onScenePressed(sceneId); });
        buttons.append(button);
    }
    arrange(buttons, Qt::AlignHCenter);
    for (QWidget* button : old) {
        button->hide();
        button->deleteLater();
    }
}

void ListScenes::onBridgeConnectedChanged()
{
    for (SceneButton* button : sceneButtons())
        button->setDimmed(!m_settings.bridgeConnected());
}

void ListScenes::onScenePressed(const QString& sceneId)
{
    // Recalled from the main queue, after the click has been handled, like every other command.
    QTimer::singleShot(0, this, [this, sceneId] { m_helper.recallScene(sceneId); });
}
