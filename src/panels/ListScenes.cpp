#include "panels/ListScenes.h"

#include "bridge/BridgeCommands.h"
#include "model/SceneRooms.h"
#include "panels/ElidedLabel.h"
#include "panels/FilterField.h"
#include "panels/SceneButton.h"
#include "panels/ScrollColumn.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QVBoxLayout>

namespace {
constexpr int padding = 5;
constexpr int buttonSpacing = 5;
const char* const sectionProperty = "glowdeckSection"; // a button's heading, for the filter
} // namespace

/// The scrolling part of the panel. The filter stays outside it: a scroll area shows screen readers only
/// what scrolls.
class SceneColumn final : public ScrollColumn
{
public:
    explicit SceneColumn(QWidget* parent) : ScrollColumn(padding, buttonSpacing, parent) {}

    using ScrollColumn::arrange;
    using ScrollColumn::content;
};

ListScenes::ListScenes(BridgeLink& settings, BridgeCommands& commands, QWidget* parent)
    : QWidget(parent), m_settings(settings), m_commands(commands)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(padding, padding, padding, 0);
    layout->setSpacing(0);
    m_filter = new FilterField(tr("Filter scenes"), this);
    m_filter->setObjectName(QStringLiteral("sceneFilter"));
    m_filter->setAccessibleDescription(tr("Type part of a scene's or a room's name. Escape clears it."));
    m_filter->hide();
    connect(m_filter, &QLineEdit::textChanged, this, &ListScenes::applyFilter);
    m_column = new SceneColumn(this);
    layout->addWidget(m_filter);
    layout->addWidget(m_column, 1);
    setFocusProxy(m_column);

    m_noMatch = new QLabel(m_column->content());
    m_noMatch->setObjectName(QStringLiteral("noMatchingScenes"));
    m_noMatch->setAlignment(Qt::AlignCenter);
    m_noMatch->setWordWrap(true);
    m_noMatch->hide();

    connect(&m_settings.home(), &BridgeHome::scenesChanged, this, &ListScenes::onScenesChanged);
    // Rooms decide the headings, and a light scene's room follows its lights' room.
    connect(&m_settings.home(), &BridgeHome::groupsChanged, this, &ListScenes::onScenesChanged);
    connect(&m_settings.home(), &BridgeHome::bridgeConnectedChanged, this,
            &ListScenes::onBridgeConnectedChanged);
    onScenesChanged();
}

ScrollColumn* ListScenes::column() const
{
    return m_column;
}

void ListScenes::setEmbedded()
{
    m_column->setEmbedded();
}

int ListScenes::naturalHeight() const
{
    return padding + (m_filter->isVisibleTo(this) ? m_filter->sizeHint().height() : 0) +
           m_column->naturalHeight();
}

QList<SceneButton*> ListScenes::sceneButtons() const
{
    QList<SceneButton*> result;
    for (QWidget* row : m_column->rows()) {
        if (auto* button = qobject_cast<SceneButton*>(row))
            result.append(button);
    }
    return result;
}

QList<QLabel*> ListScenes::headings() const
{
    QList<QLabel*> result;
    for (QWidget* row : m_column->rows()) {
        if (auto* heading = qobject_cast<QLabel*>(row); heading && heading != m_noMatch)
            result.append(heading);
    }
    return result;
}

void ListScenes::onScenesChanged()
{
    const QList<HueScene> scenes = m_settings.home().scenes();
    const QList<SceneRooms::Section> sections = SceneRooms(m_settings.home().groups()).sections(scenes);
    // One section means no room is known for any scene (or all share one): a heading would say nothing.
    const bool withHeadings =
        sections.size() > 1 || (sections.size() == 1 && !sections.first().groupId.isEmpty());
    QStringList shown;
    for (const SceneRooms::Section& section : sections) {
        if (withHeadings)
            shown << QStringLiteral("#") + section.title;
        for (const HueScene& scene : section.scenes)
            shown << scene.scene_id << scene.name;
    }
    if (shown == m_shown && !m_column->rows().isEmpty())
        return;
    m_shown = shown;

    const QList<QWidget*> old = m_column->rows();
    QList<QWidget*> column;
    for (const SceneRooms::Section& section : sections) {
        QLabel* heading = nullptr;
        if (withHeadings) {
            auto* label = new ElidedLabel(m_column->content());
            label->setFullText(section.title);
            heading = label;
            QFont bold = heading->font();
            bold.setBold(true);
            heading->setFont(bold);
            // Level with the plates' left edge; a long name is cut at their width.
            heading->setFixedWidth(SceneButton::buttonWidth);
            heading->setAccessibleName(section.title);
            column.append(heading);
        }
        for (const HueScene& scene : section.scenes) {
            auto* button = new SceneButton(scene.name, m_column->content());
            button->setDimmed(!m_settings.home().bridgeConnected());
            button->setProperty(sectionProperty, QVariant::fromValue(static_cast<QObject*>(heading)));
            if (heading) // Ten "Nightlight"s are told apart by their rooms.
                button->setAccessibleDescription(section.title);
            // Scenes with the same name stay apart: each button carries its own id.
            connect(button, &SceneButton::clicked, this,
                    [this, sceneId = scene.scene_id] { onScenePressed(sceneId); });
            column.append(button);
        }
    }
    column.append(m_noMatch);
    m_column->arrange(column, Qt::AlignHCenter);
    for (QWidget* row : old) {
        if (row != m_noMatch) {
            row->hide();
            row->deleteLater();
        }
    }

    m_filter->setVisible(scenes.size() > filterThreshold);
    if (m_filter->isHidden())
        m_filter->clear();
    applyFilter();
}

void ListScenes::applyFilter()
{
    const QString typed = m_filter->folded();
    QSet<QObject*> headingsShown;
    bool anyShown = false;
    for (SceneButton* button : sceneButtons()) {
        auto* heading = qobject_cast<QLabel*>(button->property(sectionProperty).value<QObject*>());
        const bool match = FilterField::matches(button->sceneName(), typed) ||
                           (heading && FilterField::matches(heading->accessibleName(), typed));
        button->setVisible(match);
        if (match) {
            anyShown = true;
            headingsShown.insert(heading);
        }
    }
    for (QLabel* heading : headings())
        heading->setVisible(headingsShown.contains(heading));
    m_noMatch->setText(tr("No scene matches “%1”.").arg(m_filter->text().trimmed()));
    m_noMatch->setVisible(!anyShown && !typed.isEmpty());
}

void ListScenes::onBridgeConnectedChanged()
{
    for (SceneButton* button : sceneButtons())
        button->setDimmed(!m_settings.home().bridgeConnected());
}

void ListScenes::onScenePressed(const QString& sceneId)
{
    // Recalled from the main queue, after the click has been handled, like every other command.
    QTimer::singleShot(0, this, [this, sceneId] { m_commands.recallScene(sceneId); });
}
