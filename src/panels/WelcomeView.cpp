#include "panels/WelcomeView.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

WelcomeView::WelcomeView(QWidget* parent) : QWidget(parent)
{
    auto* text = new QLabel(
        tr("This app is very minimal. It only exists in the menu bar at the top. Click the icon to start."),
        this);
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
