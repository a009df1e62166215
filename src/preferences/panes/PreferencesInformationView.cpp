#include "preferences/panes/PreferencesInformationView.h"

#include "preferences/panes/PaneWidgets.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

PreferencesInformationView::PreferencesInformationView(QUrl faq, QUrl feedback,
                                                       std::function<void(const QUrl&)> openUrl,
                                                       QWidget* parent)
    : QWidget(parent)
{
    auto* links = new QHBoxLayout;
    links->setSpacing(16);
    for (const auto& [text, url] :
         {std::pair{tr("Frequently asked questions"), faq}, std::pair{tr("Provide feedback"), feedback}}) {
        if (url.isEmpty())
            continue;
        auto* link = new LinkButton(text, this);
        link->setToolTip(url.toString());
        connect(link, &LinkButton::clicked, this, [openUrl, url] { openUrl(url); });
        links->addWidget(link);
    }
    auto* debug = new LinkButton(tr("Debug information…"), this);
    debug->setObjectName(QStringLiteral("debugInformationLink"));
    connect(debug, &LinkButton::clicked, this, &PreferencesInformationView::debugInformationRequested);
    links->addWidget(debug);
    links->addStretch();

    auto* version = new QLabel(versionText(), this);
    version->setObjectName(QStringLiteral("versionLabel"));
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    version->setForegroundRole(QPalette::PlaceholderText);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(PaneWidgets::subheading(tr("Get support"), this));
    layout->addLayout(links);
    layout->addWidget(version);
}

QString PreferencesInformationView::versionText()
{
    return tr("Version %1").arg(QCoreApplication::applicationVersion());
}
