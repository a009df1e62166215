#include "panels/WelcomeView.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

WelcomeView::WelcomeView(QWidget* parent) : QWidget(parent), m_text(new QLabel(this))
{
    QLabel* text = m_text;
    setTrayAvailable(true);
    text->setObjectName(QStringLiteral("welcomeText"));
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignCenter);

    auto* start = new QPushButton(tr("Let's go!"), this);
    start->setObjectName(QStringLiteral("letsGoButton"));
    start->setDefault(true);
    connect(start, &QPushButton::clicked, this, &WelcomeView::letsGo);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 20);
    layout->setSpacing(16);
    layout->addStretch();
    layout->addWidget(text);
    layout->addWidget(start, 0, Qt::AlignHCenter);
    layout->addStretch();
}

void WelcomeView::setTrayAvailable(bool available)
{
    // Panels sit at the top, the bottom or the side: the text names none of them.
    m_text->setText(available ? tr("This app is very minimal. It lives in the panel: click its lamp icon to "
                                   "start.")
                              : tr("This app is very minimal. This desktop has no tray for its icon, so it "
                                   "opens in a small window of its own."));
}
