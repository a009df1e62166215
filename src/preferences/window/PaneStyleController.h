#pragma once

#include "preferences/window/Pane.h"

#include <QList>
#include <QObject>

class QAction;
class QToolBar;
class QToolButton;

/// The controls at the top of the preferences window that choose a pane: one implementation per `PaneStyle`.
class PaneStyleController : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Marks the pane at `index` as the chosen one, without telling anybody.
    virtual void selectTab(int index) = 0;

Q_SIGNALS:
    /// The user chose the pane at `index`.
    void paneSelected(int index);
};

/// One checkable toolbar button per pane (icon above title), centred, identified by the pane identifier.
class ToolbarStyleController final : public PaneStyleController
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ToolbarStyleController)

public:
    ToolbarStyleController(QToolBar& toolbar, const QList<Pane>& panes, QObject* parent = nullptr);

    void selectTab(int index) override;

private:
    QList<QAction*> m_items;
};

/// One row of joined buttons ("toolbarSegmentedControl", buttons "segment-0", "segment-1"...) centred in the
/// toolbar, with the panes' titles only.
class SegmentedStyleController final : public PaneStyleController
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SegmentedStyleController)

public:
    SegmentedStyleController(QToolBar& toolbar, const QList<Pane>& panes, QObject* parent = nullptr);

    void selectTab(int index) override;

private:
    QList<QToolButton*> m_segments;
};
