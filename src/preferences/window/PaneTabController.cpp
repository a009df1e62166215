#include "preferences/window/PaneTabController.h"

#include "preferences/window/PaneStyleController.h"
#include "preferences/window/PausableWindow.h"

#include <QCoreApplication>
#include <QEasingCurve>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLayout>
#include <QPropertyAnimation>
#include <QShortcut>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

/// The platform's "ease in, ease out" timing: a cubic curve through (0.42, 0) and (0.58, 1).
QEasingCurve easeInEaseOut()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(QPointF(0.42, 0), QPointF(0.58, 1), QPointF(1, 1));
    return curve;
}

} // namespace

PaneTabController::PaneTabController(QList<Pane> panes, PaneStyle style, bool animated, QWidget* parent)
    : QWidget(parent), m_panes(std::move(panes)), m_style(style), m_animated(animated),
      m_toolbar(new QToolBar(this)), m_paneArea(new QWidget(this)), m_paneLayout(new QVBoxLayout(m_paneArea))
{
    if (m_panes.isEmpty())
        qFatal("The preferences window needs at least one pane");

    m_toolbar->setObjectName(QStringLiteral("PreferencesToolbar"));
    m_toolbar->setWindowTitle(tr("Preference panes"));
    m_toolbar->setMovable(false);
    m_toolbar->setFloatable(false);
    m_toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
    if (m_style == PaneStyle::segmentedControl)
        m_styleController = std::make_unique<SegmentedStyleController>(*m_toolbar, m_panes);
    else
        m_styleController = std::make_unique<ToolbarStyleController>(*m_toolbar, m_panes);
    connect(m_styleController.get(), &PaneStyleController::paneSelected, this,
            &PaneTabController::onPaneSelected);

    m_paneLayout->setContentsMargins(0, 0, 0, 0);
    for (const Pane& pane : std::as_const(m_panes)) {
        pane.content->setParent(m_paneArea);
        pane.content->hide();
    }

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_toolbar);
    layout->addWidget(m_paneArea, 1);

    // Ctrl+Tab and Ctrl+Shift+Tab (Ctrl+PgDown and Ctrl+PgUp too) step through the panes, as through tabs.
    for (const auto& [keys, step] :
         {std::pair{QKeySequence::NextChild, 1}, {QKeySequence::PreviousChild, -1}}) {
        auto* shortcut = new QShortcut(QKeySequence(keys), this);
        shortcut->setContext(Qt::WindowShortcut);
        shortcut->setWhatsThis(step > 0 ? tr("Next pane") : tr("Previous pane"));
        connect(shortcut, &QShortcut::activated, this, [this, step] { onNextPane(step); });
    }
}

PaneTabController::~PaneTabController() = default;

void PaneTabController::onPaneSelected(int index)
{
    activateTab(index, true);
    // A click on the button of the pane already shown leaves it checked rather than unchecked.
    if (m_activeTab)
        m_styleController->selectTab(*m_activeTab);
}

void PaneTabController::onNextPane(int step)
{
    const int count = int(m_panes.size());
    activateTab(int((m_activeTab.value_or(0) + step + count) % count), true);
}

void PaneTabController::activateTab(const QString& identifier, bool animated)
{
    for (qsizetype i = 0; i < m_panes.size(); ++i) {
        if (m_panes.at(i).identifier == identifier)
            return activateTab(int(i), animated);
    }
    activateTab(0, false);
}

void PaneTabController::activateTab(int index, bool animated)
{
    if (index < 0 || index >= m_panes.size() || m_activeTab == index)
        return;
    const std::optional<int> previous = std::exchange(m_activeTab, index);
    m_styleController->selectTab(index);
    window()->setWindowTitle(windowTitleFor(index));

    if (previous) {
        QWidget* old = m_panes.at(*previous).content;
        m_paneLayout->removeWidget(old);
        old->hide();
    }
    QWidget* pane = m_panes.at(index).content;
    m_paneLayout->addWidget(pane);
    pane->show();

    auto* pausable = qobject_cast<PausableWindow*>(window());
    // A switch that comes while the window still moves (from assistive technology, which no event filter
    // sees) starts from where the window is now.
    if (m_animation)
        m_animation->stop();
    if (!(animated && m_animated && previous && pausable && pausable->isVisible())) {
        setWindowFollowsContent(true);
        if (pausable)
            pausable->setUserInteractionEnabled(true);
        return;
    }

    // The top-left corner stays where it is, like a title bar the window hangs from.
    setWindowFollowsContent(false);
    pausable->setUserInteractionEnabled(false);
    const QRect from = pausable->geometry();
    auto* animation = new QPropertyAnimation(pausable, "geometry", this);
    animation->setDuration(animationMilliseconds);
    animation->setEasingCurve(easeInEaseOut());
    animation->setStartValue(from);
    animation->setEndValue(QRect(from.topLeft(), fittingWindowSize()));
    connect(animation, &QPropertyAnimation::finished, this, [this, pausable] {
        setWindowFollowsContent(true);
        pausable->setUserInteractionEnabled(true);
    });
    m_animation = animation;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void PaneTabController::setWindowFollowsContent(bool follows)
{
    QWidget* top = window();
    QLayout* layout = top->layout();
    if (!layout)
        return;
    if (follows) {
        // The window is not resizable: it always takes the size the shown pane asks for, also when the pane
        // grows or shrinks later (an error message appears, the list of lights fills).
        layout->setSizeConstraint(QLayout::SetFixedSize);
        layout->activate();
    } else {
        layout->setSizeConstraint(QLayout::SetNoConstraint);
        top->setMinimumSize(0, 0);
        top->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    }
}

QSize PaneTabController::fittingWindowSize() const
{
    QLayout* layout = window()->layout();
    layout->invalidate();
    return layout->totalSizeHint();
}

QString PaneTabController::windowTitleFor(int index) const
{
    // Linux desktops list windows by title: the application's name first, then the pane, as Qt itself joins
    // them. Qt's X11 window adds the name again only when a display name is set and the title does not end
    // with it; Glowdeck sets none.
    if (m_panes.size() >= 2)
        return applicationDisplayName() + QStringLiteral(" \u2014 ") + m_panes.at(index).title;
    return applicationDisplayName() + u' ' + tr("Preferences");
}

QString PaneTabController::applicationDisplayName()
{
    for (const QString& name :
         {QGuiApplication::applicationDisplayName(), QCoreApplication::applicationName(),
          QFileInfo(QCoreApplication::applicationFilePath()).fileName()}) {
        if (!name.isEmpty())
            return name;
    }
    return QStringLiteral("<Unknown App Name>");
}
