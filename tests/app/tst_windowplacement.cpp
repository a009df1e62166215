#include "app/WindowPlacement.h"

#include <QTest>

using IconRect = std::optional<QRect>;
Q_DECLARE_METATYPE(IconRect)

class TestWindowPlacement final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placesTheWindowFromTheIcon_data();
    void placesTheWindowFromTheIcon();
    void keepsTheRightEdgeFiveInsideTheScreen();
};

namespace {
const QRect screen(0, 0, 1280, 800);
}

void TestWindowPlacement::placesTheWindowFromTheIcon_data()
{
    QTest::addColumn<IconRect>("icon");
    QTest::addColumn<qint64>("height");
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QRect>("expected");

    QTest::newRow("centred under the icon")
        << IconRect(QRect(600, 0, 22, 24)) << qint64(300) << screen << QRect(511, 29, 200, 300);
    QTest::newRow("icon at the right edge moves the window left")
        << IconRect(QRect(1257, 1, 22, 22)) << qint64(300) << screen << QRect(1075, 28, 200, 300);
    QTest::newRow("icon at the left edge keeps a margin")
        << IconRect(QRect(0, 0, 22, 24)) << qint64(300) << screen << QRect(5, 29, 200, 300);
    QTest::newRow("height 0 keeps the top and asks for 0")
        << IconRect(QRect(600, 0, 22, 24)) << qint64(0) << screen << QRect(511, 29, 200, 0);
    QTest::newRow("no icon centres on the screen")
        << IconRect() << qint64(300) << screen << QRect(539, 249, 200, 300);
    QTest::newRow("empty icon geometry counts as none")
        << IconRect(QRect()) << qint64(300) << screen << QRect(539, 249, 200, 300);
    QTest::newRow("bottom panel opens above the icon")
        << IconRect(QRect(1000, 776, 22, 24)) << qint64(300) << screen << QRect(911, 471, 200, 300);
    QTest::newRow("bottom panel with height 0 leaves room for 280")
        << IconRect(QRect(1000, 776, 22, 24)) << qint64(0) << screen << QRect(911, 491, 200, 0);
    QTest::newRow("second screen to the right") << IconRect(QRect(2537, 1, 22, 22)) << qint64(300)
                                                << QRect(1280, 0, 1280, 800) << QRect(2355, 28, 200, 300);
    QTest::newRow("bottom panel taller than the room above stays on screen")
        << IconRect(QRect(1000, 776, 22, 24)) << qint64(900) << screen << QRect(911, 0, 200, 900);
}

void TestWindowPlacement::placesTheWindowFromTheIcon()
{
    QFETCH(IconRect, icon);
    QFETCH(qint64, height);
    QFETCH(QRect, available);
    QFETCH(QRect, expected);
    QCOMPARE(WindowPlacement::dropDownFrame(icon, 200, height, available), expected);
}

void TestWindowPlacement::keepsTheRightEdgeFiveInsideTheScreen()
{
    for (int iconX = 1150; iconX < 1280 - 22; iconX += 7) {
        const QRect frame = WindowPlacement::dropDownFrame(QRect(iconX, 0, 22, 24), 200, 280, screen);
        QVERIFY2(frame.x() + frame.width() <= 1280 - 5, qPrintable(QString::number(iconX)));
    }
}

QTEST_APPLESS_MAIN(TestWindowPlacement)
#include "tst_windowplacement.moc"
