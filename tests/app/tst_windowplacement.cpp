#include "app/WindowPlacement.h"

#include <QTest>

using IconRect = std::optional<QRect>;
Q_DECLARE_METATYPE(IconRect)

class TestWindowPlacement final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placesTheWindowFromTheIconOrThePointer_data();
    void placesTheWindowFromTheIconOrThePointer();
    void keepsTheRightEdgeFiveInsideTheScreen();
};

namespace {
const QRect screen(0, 0, 1280, 800);
// A screen whose top 24 and bottom 30 pixels are panels.
const QRect betweenPanels(0, 24, 1280, 746);
const QPoint nowhere(640, 10); // a pointer that must not matter while the icon is known
} // namespace

void TestWindowPlacement::placesTheWindowFromTheIconOrThePointer_data()
{
    QTest::addColumn<IconRect>("icon");
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<qint64>("height");
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QRect>("expected");
    QTest::addColumn<bool>("upwards");

    QTest::newRow("centred under the icon") << IconRect(QRect(600, 0, 22, 24)) << nowhere << qint64(300)
                                            << screen << QRect(511, 29, 200, 300) << false;
    QTest::newRow("icon at the right edge moves the window left")
        << IconRect(QRect(1257, 1, 22, 22)) << nowhere << qint64(300) << screen << QRect(1075, 28, 200, 300)
        << false;
    QTest::newRow("icon at the left edge keeps a margin")
        << IconRect(QRect(0, 0, 22, 24)) << nowhere << qint64(300) << screen << QRect(5, 29, 200, 300)
        << false;
    QTest::newRow("height 0 keeps the top and asks for 0")
        << IconRect(QRect(600, 0, 22, 24)) << nowhere << qint64(0) << screen << QRect(511, 29, 200, 0)
        << false;
    QTest::newRow("bottom panel opens above the icon")
        << IconRect(QRect(1000, 776, 22, 24)) << nowhere << qint64(300) << screen << QRect(911, 471, 200, 300)
        << true;
    QTest::newRow("bottom panel with height 0 leaves room for 280")
        << IconRect(QRect(1000, 776, 22, 24)) << nowhere << qint64(0) << screen << QRect(911, 491, 200, 0)
        << true;
    QTest::newRow("second screen to the right")
        << IconRect(QRect(2537, 1, 22, 22)) << nowhere << qint64(300) << QRect(1280, 0, 1280, 800)
        << QRect(2355, 28, 200, 300) << false;
    QTest::newRow("bottom panel taller than the room above stays on screen")
        << IconRect(QRect(1000, 776, 22, 24)) << nowhere << qint64(900) << screen << QRect(911, 0, 200, 900)
        << true;

    // A StatusNotifier tray tells no geometry: the click's position stands in for the icon.
    QTest::newRow("no icon: under the pointer in the top half")
        << IconRect() << QPoint(700, 12) << qint64(300) << betweenPanels << QRect(600, 30, 200, 300) << false;
    QTest::newRow("empty icon geometry counts as none") << IconRect(QRect()) << QPoint(700, 12) << qint64(300)
                                                        << betweenPanels << QRect(600, 30, 200, 300) << false;
    QTest::newRow("no icon: above the pointer on a bottom panel")
        << IconRect() << QPoint(1000, 785) << qint64(300) << betweenPanels << QRect(900, 464, 200, 300)
        << true;
    QTest::newRow("no icon: pointer at the right screen edge")
        << IconRect() << QPoint(1279, 785) << qint64(300) << betweenPanels << QRect(1075, 464, 200, 300)
        << true;
    QTest::newRow("no icon: pointer at the left screen edge")
        << IconRect() << QPoint(0, 5) << qint64(300) << betweenPanels << QRect(5, 30, 200, 300) << false;
    QTest::newRow("no icon: pointer in the middle of the upper half")
        << IconRect() << QPoint(640, 390) << qint64(300) << betweenPanels << QRect(540, 396, 200, 300)
        << false;
    QTest::newRow("no icon: pointer just above the middle, window moved up to fit")
        << IconRect() << QPoint(640, 396) << qint64(500) << betweenPanels << QRect(540, 270, 200, 500)
        << false;
}

void TestWindowPlacement::placesTheWindowFromTheIconOrThePointer()
{
    QFETCH(IconRect, icon);
    QFETCH(QPoint, pointer);
    QFETCH(qint64, height);
    QFETCH(QRect, available);
    QFETCH(QRect, expected);
    QFETCH(bool, upwards);
    const WindowPlacement::Placement placement =
        WindowPlacement::dropDownFrame(icon, pointer, 200, height, available);
    QCOMPARE(placement.frame, expected);
    QCOMPARE(placement.upwards, upwards);
    if (height > 0 && height <= available.height())
        QVERIFY2(available.contains(placement.frame), "the window leaves the available area");
}

void TestWindowPlacement::keepsTheRightEdgeFiveInsideTheScreen()
{
    for (int iconX = 1150; iconX < 1280 - 22; iconX += 7) {
        const QRect frame =
            WindowPlacement::dropDownFrame(QRect(iconX, 0, 22, 24), {}, 200, 280, screen).frame;
        QVERIFY2(frame.x() + frame.width() <= 1280 - 5, qPrintable(QString::number(iconX)));
    }
}

QTEST_APPLESS_MAIN(TestWindowPlacement)
#include "tst_windowplacement.moc"
