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
                              : windowModeText());
}

QString WelcomeView::windowModeText()
{
    return tr("This desktop shows no system tray, so Glowdeck opens in a window of its own. For a lamp icon "
              "in the panel, the desktop needs a tray (on GNOME, the AppIndicator extension). Closing the "
              "window keeps Glowdeck running for its shortcuts; starting Glowdeck again brings it back.");
}
