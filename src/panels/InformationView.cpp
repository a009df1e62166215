#include "panels/InformationView.h"

#include "panels/Browser.h"
#include "panels/Theme.h"
#include "panels/WebViewModel.h"
#include "state/ProductLinks.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QPushButton* linkButton(const QString& text, const QString& name, QWidget* parent)
{
    // A button reads "&" as the mark of its shortcut letter; the query of an address is full of them.
    QString shown = text;
    auto* button = new QPushButton(shown.replace(QLatin1Char('&'), QStringLiteral("&&")), parent);
    button->setObjectName(name);
    button->setFlat(true);
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(QStringLiteral("QPushButton { text-decoration: underline; border: none; }"));
    return button;
}

} // namespace

InformationView::InformationView(const ProductLinks& links, const QString& context, QWidget* parent)
    : QWidget(parent), m_model(new WebViewModel(this)), m_donation(links.donation)
{
    m_model->setLink(links.informationPage(context, QCoreApplication::applicationVersion()));
    m_model->setDarkMode(Theme::isDark(this));
    buildPage();
}

void InformationView::buildPage()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(12);

    // The seam for an embedded page: with Qt WebEngine a QWebEngineView (background off, "darkMode();" run
    // after loading when `darkMode` is set) takes this place. Until
    // the build finds Qt6::WebEngineWidgets the page opens in the browser instead.
    const QUrl page = m_model->link();
    if (!page.isEmpty() && page.isValid()) {
        auto* open = linkButton(page.toString(), QStringLiteral("pageLink"), this);
        connect(open, &QPushButton::clicked, this, &InformationView::onPageLinkClicked);
        layout->addWidget(open, 0, Qt::AlignHCenter);
    }
    layout->addStretch();

    const QString donationText = tr("Want to help? A coffee is always appreciated.");
    if (!m_donation.isEmpty() && m_donation.isValid()) {
        auto* donate = linkButton(donationText, QStringLiteral("donationLink"), this);
        connect(donate, &QPushButton::clicked, this, &InformationView::onDonationClicked);
        layout->addWidget(donate, 0, Qt::AlignHCenter);
    } else {
        auto* plain = new QLabel(donationText, this);
        plain->setObjectName(QStringLiteral("donationText"));
        plain->setWordWrap(true);
        plain->setAlignment(Qt::AlignCenter);
        layout->addWidget(plain);
    }
}

void InformationView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        m_model->setDarkMode(Theme::isDark(this));
    QWidget::changeEvent(event);
}

void InformationView::onPageLinkClicked()
{
    Browser::open(m_model->link());
}

void InformationView::onDonationClicked()
{
    Browser::open(m_donation);
}
