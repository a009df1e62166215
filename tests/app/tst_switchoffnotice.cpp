#include "app/SwitchOffNotice.h"

#include <QLocale>
#include <QSystemTrayIcon>
#include <QTest>

class TestSwitchOffNotice final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tooltipSaysWhenTheLightsGoOffWhileATimerIsPending_data();
    void tooltipSaysWhenTheLightsGoOffWhileATimerIsPending();
};

void TestSwitchOffNotice::tooltipSaysWhenTheLightsGoOffWhileATimerIsPending_data()
{
    QTest::addColumn<QDateTime>("at");
    QTest::newRow("local time") << QDateTime(QDate(2026, 1, 5), QTime(21, 20));
    QTest::newRow("past midnight") << QDateTime(QDate(2026, 1, 6), QTime(0, 5));
    // A timer found on the bridge comes in UTC; the user reads the time of the clock on the wall.
    QTest::newRow("UTC") << QDateTime(QDate(2026, 1, 5), QTime(21, 20)).toUTC();
}

void TestSwitchOffNotice::tooltipSaysWhenTheLightsGoOffWhileATimerIsPending()
{
    QFETCH(QDateTime, at);
    QSystemTrayIcon icon;
    icon.setToolTip(SwitchOffNotice::restingToolTip);
    SwitchOffNotice notice(icon);

    notice.setPendingUntil(at);

    const QString time = QLocale().toString(at.toLocalTime().time(), QLocale::ShortFormat);
    QVERIFY2(icon.toolTip().startsWith(QStringLiteral("Glowdeck \u2014 ")), qPrintable(icon.toolTip()));
    QVERIFY2(icon.toolTip().contains(time), qPrintable(icon.toolTip()));

    // Cancelled, refused or gone off.
    notice.setPendingUntil({});
    QCOMPARE(icon.toolTip(), SwitchOffNotice::restingToolTip);
    QVERIFY(!notice.pendingUntil().isValid());
}

QTEST_MAIN(TestSwitchOffNotice)
#include "tst_switchoffnotice.moc"
