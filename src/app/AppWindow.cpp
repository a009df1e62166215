#include "app/AppWindow.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

AppWindow::AppWindow()
    : QWidget(nullptr, Qt::Window), m_noticeBar(new QWidget(this)), m_notice(new QLabel(m_noticeBar)),
      m_layout(new QVBoxLayout(this))
{
    setWindowTitle(QStringLiteral("Glowdeck"));
    setObjectName(QStringLiteral("glowdeckWindow"));
    m_notice->setObjectName(QStringLiteral("windowModeNotice"));
    m_notice->setWordWrap(true);
    m_notice->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* dismiss = new QToolButton(m_noticeBar);
    dismiss->setObjectName(QStringLiteral("dismissNotice"));
    dismiss->setText(QStringLiteral("\u00d7"));
    dismiss->setAutoRaise(true);
    dismiss->setToolTip(tr("Hide this note"));
    dismiss->setAccessibleName(tr("Hide this note"));
    connect(dismiss, &QToolButton::clicked, this, [this] { setNotice(QString()); });

    auto* noticeLayout = new QHBoxLayout(m_noticeBar);
    noticeLayout->setContentsMargins(10, 8, 4, 8);
    noticeLayout->addWidget(m_notice, 1);
    noticeLayout->addWidget(dismiss, 0, Qt::AlignTop);
    m_noticeBar->hide();

    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addWidget(m_noticeBar);
}

void AppWindow::adoptContent(QWidget* content)
{
    if (m_content == content)
        return;
    releaseContent();
    m_content = content;
    m_layout->addWidget(content, 1);
    content->show();
}

QWidget* AppWindow::releaseContent()
{
    QWidget* content = m_content;
    if (!content)
        return nullptr;
    m_layout->removeWidget(content);
    content->setParent(nullptr);
    m_content = nullptr;
    return content;
}

void AppWindow::setNotice(const QString& text)
{
    m_notice->setText(text);
    m_notice->setAccessibleName(text);
    m_noticeBar->setVisible(!text.isEmpty());
}

QString AppWindow::notice() const
{
    return m_noticeBar->isVisibleTo(this) ? m_notice->text() : QString();
}

void AppWindow::closeEvent(QCloseEvent* event)
{
    // Hidden, not gone: the program runs on for its shortcuts, and its content is the drop-down's.
    event->accept();
    Q_EMIT closed();
}
