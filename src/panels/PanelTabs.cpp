#include "panels/PanelTabs.h"

#include "panels/Theme.h"
#include "state/AppSettings.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPainter>

namespace {

constexpr int outerPadding = 10;
constexpr int tabSpacing = 5;
constexpr int verticalPadding = 5;
constexpr int labelPointSize = 18;
constexpr qreal tabOpacity = 0.9;

/// One emoji tab, drawn as a rounded label; the whole tab takes the click.
class PanelTab final : public QAbstractButton
{
public:
    PanelTab(const QString& label, QWidget* parent) : QAbstractButton(parent)
    {
        setText(label);
        QFont bold = font();
        bold.setPointSize(labelPointSize);
        bold.setBold(true);
        setFont(bold);
        setCheckable(false);
        setCursor(Qt::PointingHandCursor);
        setFocusPolicy(Qt::NoFocus);
        // Width comes from the row's equal stretch alone, never from the emoji's own width.
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    }

    void setActive(bool active)
    {
        if (m_active == active)
            return;
        m_active = active;
        update();
    }
    bool isActive() const { return m_active; }

    QSize sizeHint() const override { return QSize(40, fontMetrics().height() + 2 * verticalPadding); }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        const bool dark = Theme::isDark(this);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setOpacity(tabOpacity);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_active ? QColor(Qt::yellow) : QColor(Qt::gray));
        painter.drawRoundedRect(QRectF(rect()), Theme::controlRadius, Theme::controlRadius);
        painter.setPen(m_active ? QColor(Qt::black) : Theme::text(dark));
        painter.drawText(rect(), Qt::AlignCenter, text());
    }

private:
    bool m_active = false;
};

} // namespace

PanelTabs::PanelTabs(AppSettings& settings, QWidget* parent) : QWidget(parent), m_settings(settings)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(outerPadding, verticalPadding, outerPadding, verticalPadding);
    layout->setSpacing(tabSpacing);

    const struct
    {
        QString label;
        MainPanels panel;
    } tabs[] = {
        {QStringLiteral("\U0001F4A1"), MainPanels::lights},
        {QStringLiteral("\U0001F3E0"), MainPanels::rooms},
        {QStringLiteral("\U0001F3AC"), MainPanels::scenes},
    };
    for (const auto& [label, panel] : tabs) {
        auto* tab = new PanelTab(label, this);
        tab->setObjectName(QStringLiteral("panelTab%1").arg(int(panel)));
        layout->addWidget(tab, 1);
        connect(tab, &QAbstractButton::clicked, this, [this, panel = panel] { onTabClicked(panel); });
        m_tabs.append(tab);
    }

    connect(&m_settings, &AppSettings::showScenesChanged, this, &PanelTabs::onShowScenesChanged);
    connect(&m_settings, &AppSettings::activeMainPanelChanged, this, &PanelTabs::onActiveMainPanelChanged);
    onShowScenesChanged();
    onActiveMainPanelChanged();
}

QAbstractButton* PanelTabs::tab(MainPanels panel) const
{
    const int index = int(panel);
    return index >= 0 && index < m_tabs.size() ? m_tabs.at(index) : nullptr;
}

void PanelTabs::onTabClicked(MainPanels panel)
{
    // The panel changes from the event loop, after the click has finished, as every tap does; the setter
    // then asks the window for the panel's height, also when the tab was already active.
    QMetaObject::invokeMethod(
        this, [this, panel] { m_settings.setActiveMainPanel(panel); }, Qt::QueuedConnection);
}

void PanelTabs::onShowScenesChanged()
{
    tab(MainPanels::scenes)->setVisible(m_settings.showScenes());
}

void PanelTabs::onActiveMainPanelChanged()
{
    for (int index = 0; index < m_tabs.size(); ++index)
        static_cast<PanelTab*>(m_tabs.at(index))->setActive(index == int(m_settings.activeMainPanel()));
}
