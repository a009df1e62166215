#include "preferences/panes/DebugView.h"

#include "preferences/panes/DebugReport.h"
#include "preferences/panes/PaneWidgets.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

DebugView::DebugView(DebugReport& report, std::function<void(const QUrl&)> openUrl, QWidget* parent)
    : QWidget(parent, Qt::Window), m_report(report), m_openUrl(std::move(openUrl)),
      m_send(new QPushButton(tr("Send debug data"), this)), m_show(new QPushButton(tr("Show report"), this)),
      m_outcome(PaneWidgets::wrappedText(QString(), this))
{
    setWindowTitle(tr("Debug information"));
    m_send->setObjectName(QStringLiteral("sendDebugButton"));
    m_show->setObjectName(QStringLiteral("showReportButton"));
    m_outcome->setObjectName(QStringLiteral("debugOutcome"));
    m_send->setDefault(true);

    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(m_show, QDialogButtonBox::ActionRole);
    buttons->addButton(m_send, QDialogButtonBox::AcceptRole);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(PaneWidgets::margin, PaneWidgets::margin, PaneWidgets::margin,
                               PaneWidgets::margin);
    layout->setSpacing(12);
    layout->addWidget(PaneWidgets::heading(tr("Debug information"), this));
    layout->addWidget(PaneWidgets::wrappedText(
        tr("When Glowdeck cannot find or reach your bridge, a debug report helps to find out why. It holds "
           "the versions of Glowdeck, Qt and your system, your settings and the last messages of the program "
           "(the bridge's key left out), and whether the bridge answers. It is saved on this computer, where "
           "you can read it, and sent to the developers unless error reports are switched off."),
        this));
    layout->addWidget(m_outcome);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(m_send, &QPushButton::clicked, this, &DebugView::onSend);
    connect(m_show, &QPushButton::clicked, this, &DebugView::onShowReport);
    connect(&m_report, &DebugReport::finished, this, &DebugView::onFinished);
    for (const QKeySequence& keys : {QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close)}) {
        auto* shortcut = new QShortcut(keys, this);
        shortcut->setWhatsThis(tr("Close the window"));
        connect(shortcut, &QShortcut::activated, this, &QWidget::close);
    }
    m_outcome->hide();
}

void DebugView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_show->setEnabled(QFileInfo::exists(DebugReport::reportPath()));
}

void DebugView::onSend()
{
    m_send->setEnabled(false);
    m_outcome->setText(tr("Collecting…"));
    m_outcome->show();
    m_report.send();
}

void DebugView::onFinished(bool written)
{
    m_send->setEnabled(true);
    m_show->setEnabled(QFileInfo::exists(DebugReport::reportPath()));
    m_outcome->setText(written ? tr("Thank you!")
                               : tr("No report could be made; the reason is in the program's "
                                    "messages."));
    m_outcome->show();
}

void DebugView::onShowReport()
{
    m_openUrl(QUrl::fromLocalFile(DebugReport::reportPath()));
}
