#include "UrlCatcher.h"

#include "panels/InformationView.h"
#include "panels/WebViewModel.h"
#include "state/ProductLinks.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTest>
#include <QUrlQuery>

class TestInformationView final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void pointsAtTheVersionsPageOfTheWebsite_data();
    void pointsAtTheVersionsPageOfTheWebsite();
    void opensThePageAndTheDonationInTheBrowser();
    void offersNothingToClickWhenTheWebsiteIsSwitchedOff();

private:
    static ProductLinks loopbackLinks();
    static QString shownText(const QAbstractButton* button);
};

void TestInformationView::initTestCase()
{
    QCoreApplication::setApplicationVersion(QStringLiteral("2.7.0"));
}

ProductLinks TestInformationView::loopbackLinks()
{
    ProductLinks links;
    links.website = QUrl(QStringLiteral("http://127.0.0.1:9/"));
    links.donation = QUrl(QStringLiteral("http://127.0.0.1:9/coffee/"));
    return links;
}

// The text as drawn: a single "&" marks the next letter as the shortcut and is not shown, "&&" shows as "&".
QString TestInformationView::shownText(const QAbstractButton* button)
{
    const QString text = button->text();
    QString shown;
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (text.at(index) == QLatin1Char('&') && ++index >= text.size())
            break;
        shown.append(text.at(index));
    }
    return shown;
}

void TestInformationView::pointsAtTheVersionsPageOfTheWebsite_data()
{
    QTest::addColumn<QString>("website");
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("expected");
    QTest::newRow("site root") << "http://127.0.0.1:9/"
                               << "prefs"
                               << "http://127.0.0.1:9/app_view/?ac=prefs&v=2.7.0";
    QTest::newRow("no trailing slash") << "http://localhost:9"
                                       << "menu"
                                       << "http://localhost:9/app_view/?ac=menu&v=2.7.0";
}

void TestInformationView::pointsAtTheVersionsPageOfTheWebsite()
{
    QFETCH(QString, website);
    QFETCH(QString, context);
    QFETCH(QString, expected);
    ProductLinks links = loopbackLinks();
    links.website = QUrl(website);

    InformationView view(links, context);

    QCOMPARE(view.model().link(), QUrl(expected));
    QCOMPARE(shownText(view.findChild<QAbstractButton*>(QStringLiteral("pageLink"))), expected);
}

void TestInformationView::opensThePageAndTheDonationInTheBrowser()
{
    UrlCatcher browser;
    InformationView view(loopbackLinks(), QStringLiteral("prefs"));
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    QTest::mouseClick(view.findChild<QAbstractButton*>(QStringLiteral("pageLink")), Qt::LeftButton);
    auto* donation = view.findChild<QAbstractButton*>(QStringLiteral("donationLink"));
    QCOMPARE(shownText(donation), QStringLiteral("Want to help? A coffee is always appreciated."));
    QTest::mouseClick(donation, Qt::LeftButton);

    QCOMPARE(browser.opened,
             (QList<QUrl>{QUrl(QStringLiteral("http://127.0.0.1:9/app_view/?ac=prefs&v=2.7.0")),
                          QUrl(QStringLiteral("http://127.0.0.1:9/coffee/"))}));
}

void TestInformationView::offersNothingToClickWhenTheWebsiteIsSwitchedOff()
{
    UrlCatcher browser;
    InformationView view(ProductLinks{}, QStringLiteral("prefs"));
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    QVERIFY(view.model().link().isEmpty());
    QVERIFY(view.findChildren<QAbstractButton*>().isEmpty());
    // The thanks stay readable even without a donation page.
    QCOMPARE(view.findChild<QLabel*>(QStringLiteral("donationText"))->text(),
             QStringLiteral("Want to help? A coffee is always appreciated."));
    QVERIFY(browser.opened.isEmpty());
}

QTEST_MAIN(TestInformationView)
#include "tst_informationview.moc"
