#include "panels/WelcomeView.h"

#include <QAbstractButton>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

class TestWelcomeView final : public QObject
{
    Q_OBJECT

private slots:
    void explainsWhereTheProgramLivesAndStartsOnThePress();
};

void TestWelcomeView::explainsWhereTheProgramLivesAndStartsOnThePress()
{
    WelcomeView view;
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QSignalSpy started(&view, &WelcomeView::letsGo);

    QCOMPARE(view.findChild<QLabel*>(QStringLiteral("welcomeText"))->text(),
             QStringLiteral("This app is very minimal. It only exists in the menu bar at the top. "
                            "Click the icon to start."));
    auto* button = view.findChild<QAbstractButton*>(QStringLiteral("letsGoButton"));
    QCOMPARE(button->text(), QStringLiteral("Let's go!"));
    QCOMPARE(started.size(), 0);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(started.size(), 1);
}

QTEST_MAIN(TestWelcomeView)
#include "tst_welcomeview.moc"
