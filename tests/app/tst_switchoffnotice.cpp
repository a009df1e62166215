#include "app/SwitchOffNotice.h"

#include <QLocale>
#include <QSystemTrayIcon>
#include <QTest>

class TestSwitchOffNotice final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tooltipSaysWhenTheLightsGoOffUntilThen_data();
    void tooltipSaysWhenTheLightsGoOffUntilThen();
    void tooltipReturnsOnceTheTimeHasCome();
};

void TestSwitchOffNotice::tooltipSaysWhenTheLightsGoOffUntilThen_data()
{
    QTest::addColumn<QTime>("from");
    QTest::addColumn<qint64>("minutes");
    QTest::addColumn<QTime>("at");
    QTest::newRow("5") << QTime(21, 15) << qint64(5) << QTime(21, 20);
    QTest::newRow("30, past midnight") << QTime(23, 35) << qint64(30) << QTime(0, 5);
    QTest::newRow("60") << QTime(21, 15) << qint64(60) << QTime(22, 15);
}

void TestSwitchOffNotice::tooltipSaysWhenTheLightsGoOffUntilThen()
{
    QFETCH(QTime, from);
    QFETCH(qint64, minutes);
    QFETCH(QTime, at);
    QSystemTrayIcon icon;
    icon.setToolTip(SwitchOffNotice::restingToolTip);
    SwitchOffNotice notice(icon);
    const QDateTime now(QDate(2026, 1, 5), from);
    notice.setClock([now] { return now; });

    notice.announce(minutes);

    const QString time = QLocale().toString(at, QLocale::ShortFormat);
    QVERIFY2(icon.toolTip().startsWith(QStringLiteral("Glowdeck \u2014 ")), qPrintable(icon.toolTip()));
    QVERIFY2(icon.toolTip().contains(time), qPrintable(icon.toolTip()));
    QCOMPARE(notice.pendingUntil().time(), at);
    QVERIFY(SwitchOffNotice::message(notice.pendingUntil(), minutes).contains(QString::number(minutes)));
}

void TestSwitchOffNotice::tooltipReturnsOnceTheTimeHasCome()
{
    QSystemTrayIcon icon;
    SwitchOffNotice notice(icon);
    notice.announce(30);
    QVERIFY(icon.toolTip() != SwitchOffNotice::restingToolTip);
    // A later choice replaces the earlier one; with no delay left the tooltip is at rest at once.
    notice.announce(0);
    QTRY_COMPARE(icon.toolTip(), SwitchOffNotice::restingToolTip);
    QVERIFY(!notice.pendingUntil().isValid());
}

QTEST_MAIN(TestSwitchOffNotice)
#include "tst_switchoffnotice.moc"
