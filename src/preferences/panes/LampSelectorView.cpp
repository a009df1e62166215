#include "preferences/panes/LampSelectorView.h"

#include "preferences/panes/PaneWidgets.h"
#include "state/BridgeHome.h"
#include "state/BridgeLink.h"
#include "state/LightOrder.h"

#include <QAbstractItemModel>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int lampIdRole = Qt::UserRole;
// Enough rows to see a usual home at a glance; longer lists scroll.
constexpr int visibleRows = 12;

/// The lamp ids and names, which is all the list shows: a refresh that changes only brightness or colour
/// leaves the list (and a drag in progress) alone.
QList<std::pair<QString, QString>> listed(const QList<HueLight>& lights)
{
    QList<std::pair<QString, QString>> pairs;
    for (const HueLight& light : lights)
        pairs.append({light.lamp_id, light.name});
    return pairs;
}

/// The list, told when a drag starts and ends: a refresh arriving meanwhile must not rebuild the rows under
/// the drag (QDrag::exec() runs the event loop until the drop).
class LightList final : public QListWidget
{
public:
    using QListWidget::QListWidget;

    bool isDragging() const { return m_dragging; }
    std::function<void()> afterDrag;

protected:
    void startDrag(Qt::DropActions actions) override
    {
        m_dragging = true;
        QListWidget::startDrag(actions);
        m_dragging = false;
        if (afterDrag)
            afterDrag();
    }

private:
    bool m_dragging = false;
};

} // namespace

LampSelectorView::LampSelectorView(BridgeLink& settings, QWidget* parent)
    : QWidget(parent), m_settings(settings), m_list(new LightList(this)), m_moveButtons(new QWidget(this)),
      m_up(new QPushButton(tr("Move up"), m_moveButtons)),
      m_down(new QPushButton(tr("Move down"), m_moveButtons)),
      m_empty(PaneWidgets::wrappedText(tr("No lights yet. Connect to your Hue bridge, and its lights are "
                                          "listed here."),
                                       this)),
      m_toConnection(new LinkButton(tr("Open the connection settings"), this))
{
    // The drop's new order first, then whatever the bridge sent meanwhile.
    static_cast<LightList*>(m_list)->afterDrag = [this] {
        onRowsMoved();
        onLightsChanged();
    };
    m_list->setObjectName(QStringLiteral("lightList"));
    m_list->setAccessibleName(tr("Lights"));
    m_list->setDragDropMode(QAbstractItemView::InternalMove);
    m_list->setDefaultDropAction(Qt::MoveAction);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setMinimumWidth(PaneWidgets::contentWidth);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);

    m_up->setObjectName(QStringLiteral("moveUpButton"));
    m_down->setObjectName(QStringLiteral("moveDownButton"));
    m_up->setIcon(QIcon::fromTheme(QStringLiteral("go-up")));
    m_down->setIcon(QIcon::fromTheme(QStringLiteral("go-down")));
    auto* buttons = new QHBoxLayout(m_moveButtons);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->addWidget(m_up);
    buttons->addWidget(m_down);
    buttons->addStretch();
    buttons->addWidget(new QLabel(tr("Drag a light to change the order."), m_moveButtons));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(PaneWidgets::margin, PaneWidgets::margin, PaneWidgets::margin,
                               PaneWidgets::margin);
    layout->setSpacing(10);
    layout->addWidget(PaneWidgets::heading(tr("Which lights do you want to control?"), this));
    layout->addWidget(m_list);
    layout->addWidget(m_moveButtons);
    layout->addWidget(m_empty);
    layout->addWidget(m_toConnection);

    connect(m_list, &QListWidget::itemChanged, this, &LampSelectorView::onItemChanged);
    connect(m_list, &QListWidget::itemSelectionChanged, this, &LampSelectorView::onCurrentRowChanged);
    // A drop moves rows inside the model; the new order is read once the drop has finished.
    connect(m_list->model(), &QAbstractItemModel::rowsMoved, this,
            [this] { QTimer::singleShot(0, this, &LampSelectorView::onRowsMoved); });
    connect(m_up, &QPushButton::clicked, this,
            [this] { moveLight(m_list->currentRow(), m_list->currentRow() - 1); });
    connect(m_down, &QPushButton::clicked, this,
            [this] { moveLight(m_list->currentRow(), m_list->currentRow() + 1); });
    for (const auto& [keys, step] : {std::pair{Qt::ALT | Qt::Key_Up, -1}, {Qt::ALT | Qt::Key_Down, 1}}) {
        auto* shortcut = new QShortcut(QKeySequence(keys), m_list, nullptr, nullptr, Qt::WidgetShortcut);
        shortcut->setWhatsThis(step < 0 ? tr("Move up") : tr("Move down"));
        connect(shortcut, &QShortcut::activated, this,
                [this, step] { moveLight(selectedRow(), selectedRow() + step); });
    }
    connect(m_toConnection, &LinkButton::clicked, this, &LampSelectorView::connectionPaneRequested);
    connect(&m_settings.home(), &BridgeHome::lightsChanged, this, &LampSelectorView::onLightsChanged);
    m_settings.preferences().whenLightVisibilityChanged(this, &LampSelectorView::onVisibilityChanged);
    rebuild();
}

void LampSelectorView::onVisibilityChanged()
{
    // Another program hid or showed a light (a switch of this pane is already in its new state).
    const QSignalBlocker blocker(m_list);
    for (int row = 0; row < m_list->count() && row < m_lights.size(); ++row)
        m_list->item(row)->setCheckState(
            m_settings.preferences().isLightHidden(m_lights.at(row)) ? Qt::Unchecked : Qt::Checked);
}

void LampSelectorView::onLightsChanged()
{
    // The pane's order is the stored one; the bridge's list reaches it through that order.
    const QList<HueLight> fresh = LightOrder::apply(m_settings.home().lights(), m_settings.lightOrder());
    if (static_cast<LightList*>(m_list)->isDragging() || listed(fresh) == listed(m_lights))
        return;
    rebuild();
}

void LampSelectorView::rebuild()
{
    m_lights = LightOrder::apply(m_settings.home().lights(), m_settings.lightOrder());
    const QString current =
        m_list->currentItem() ? m_list->currentItem()->data(lampIdRole).toString() : QString();
    const QSignalBlocker blocker(m_list);
    m_list->clear();
    for (const HueLight& light : std::as_const(m_lights)) {
        auto* item = new QListWidgetItem(light.name, m_list);
        item->setData(lampIdRole, light.lamp_id);
        item->setSizeHint(QSize(0, rowHeight()));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable |
                       Qt::ItemIsDragEnabled);
        // A light never switched here has no flag and counts as shown.
        item->setCheckState(m_settings.preferences().isLightHidden(light) ? Qt::Unchecked : Qt::Checked);
        if (light.lamp_id == current)
            m_list->setCurrentItem(item);
    }
    const bool empty = m_lights.isEmpty();
    m_list->setVisible(!empty);
    m_moveButtons->setVisible(!empty);
    m_empty->setVisible(empty);
    m_toConnection->setVisible(empty);
    fitListHeight();
    onCurrentRowChanged();
}

int LampSelectorView::rowHeight() const
{
    // Roomy enough to grab a row for dragging.
    return m_list->fontMetrics().height() + 12;
}

void LampSelectorView::fitListHeight()
{
    const int rows = std::clamp(int(m_lights.size()), 1, visibleRows);
    m_list->setFixedHeight(rows * rowHeight() + 2 * m_list->frameWidth());
}

void LampSelectorView::onItemChanged()
{
    for (int row = 0; row < m_list->count() && row < m_lights.size(); ++row)
        m_settings.setLightHidden(m_lights.at(row), m_list->item(row)->checkState() != Qt::Checked);
}

void LampSelectorView::onRowsMoved()
{
    QList<HueLight> reordered;
    for (int row = 0; row < m_list->count(); ++row) {
        const QString id = m_list->item(row)->data(lampIdRole).toString();
        const auto light = std::find_if(m_lights.cbegin(), m_lights.cend(),
                                        [&id](const HueLight& l) { return l.lamp_id == id; });
        if (light != m_lights.cend())
            reordered.append(*light);
    }
    if (reordered.size() != m_lights.size() || listed(reordered) == listed(m_lights))
        return;
    m_lights = reordered;
    m_settings.setLightOrder(m_lights);
    onCurrentRowChanged();
}

void LampSelectorView::moveLight(int from, int to)
{
    if (from < 0 || to < 0 || from >= m_list->count() || to >= m_list->count() || from == to)
        return;
    // moveRow() takes the row before which the moved row lands, counted before the move.
    m_list->model()->moveRow(QModelIndex(), from, QModelIndex(), to > from ? to + 1 : to);
    m_list->setCurrentRow(to);
    onRowsMoved();
}

int LampSelectorView::selectedRow() const
{
    // Assistive technology selects a row without making it the current one.
    const QList<QListWidgetItem*> selected = m_list->selectedItems();
    return selected.isEmpty() ? m_list->currentRow() : m_list->row(selected.first());
}

void LampSelectorView::onCurrentRowChanged()
{
    const int row = selectedRow();
    m_up->setEnabled(row > 0);
    m_down->setEnabled(row >= 0 && row + 1 < m_list->count());
}
