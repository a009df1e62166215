#include "MouseDrag.h"
#include "TestSupport.h"
#include "app/DropDownWindow.h"
#include "app/HeightGrip.h"
#include "app/StatusBarMenuWindowController.h"
#include "state/SettingsKeys.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QScreen>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

class TestStatusBarMenuWindowController final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void savesTheHeightUnderTheActivePanelOnly_data();
    void savesTheHeightUnderTheActivePanelOnly();
    void savesTheHeightAtTheEndOfADrag();
    void opensAsWideAsTheContentAsksUpToAThirdOfTheScreen_data();
    void opensAsWideAsTheContentAsksUpToAThirdOfTheScreen();
    void staysOpenOnAClickInsideAndClosesOnLeaving_data();
    void staysOpenOnAClickInsideAndClosesOnLeaving();
    void opensUnderTheIconNearTheRightEdge();
    void opensAtTheContentsHeightWithoutAStoredHeight_data();
    void opensAtTheContentsHeightWithoutAStoredHeight();
    void opensAtThePointerWithoutAnIcon_data();
    void opensAtThePointerWithoutAnIcon();
    void topGripOfAnUpwardWindowKeepsItsBottomEdge();
    void restoresTheStoredPanelBeforeOpening_data();
    void restoresTheStoredPanelBeforeOpening();
    void shapeHoldsOnlyFullyPaintedPixels_data();
    void shapeHoldsOnlyFullyPaintedPixels();

private:
    std::unique_ptr<TestSettings> m_state;
    std::unique_ptr<StatusBarMenuWindowController> m_controller;
    std::unique_ptr<QWidget> m_otherWindow;
    QWidget* m_content = nullptr;
    std::optional<QRect> m_icon;
};

void TestStatusBarMenuWindowController::init()
{
    m_state = std::make_unique<TestSettings>();
    m_content = new QWidget;
    m_icon.reset();
    m_controller = std::make_unique<StatusBarMenuWindowController>(m_state->settings().preferences(),
                                                                   m_content, [this] { return m_icon; });
    m_otherWindow = std::make_unique<QWidget>();
    m_otherWindow->setGeometry(20, 500, 120, 80);
    m_otherWindow->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_otherWindow.get()));
}

void TestStatusBarMenuWindowController::cleanup()
{
    m_controller.reset();
    m_otherWindow.reset();
    m_state.reset();
}

void TestStatusBarMenuWindowController::savesTheHeightUnderTheActivePanelOnly_data()
{
    QTest::addColumn<qint64>("panel");
    QTest::addColumn<QString>("key"); // empty: nothing is stored

    QTest::newRow("lights") << qint64(0) << SettingsKeys::preferredWindowHeightLights;
    QTest::newRow("rooms") << qint64(1) << SettingsKeys::preferredWindowHeightRooms;
    QTest::newRow("scenes") << qint64(2) << SettingsKeys::preferredWindowHeightScenes;
    QTest::newRow("unknown panel") << qint64(7) << QString();
}

void TestStatusBarMenuWindowController::savesTheHeightUnderTheActivePanelOnly()
{
    QFETCH(qint64, panel);
    QFETCH(QString, key);
    m_state->store().writeInt(SettingsKeys::activePanel, panel);
    m_controller->setPreferredHeight(340);
    m_controller->show();
    QTRY_COMPARE(m_content->height(), 340);

    m_controller->saveWindowHeight();

    for (const QString& heightKey :
         {SettingsKeys::preferredWindowHeightLights, SettingsKeys::preferredWindowHeightRooms,
          SettingsKeys::preferredWindowHeightScenes}) {
        QCOMPARE(m_state->store().contains(heightKey), heightKey == key);
    }
    if (!key.isEmpty())
        QCOMPARE(m_state->store().readInt(key), 340);
    // The shared state read the stored height again.
    if (panel == 1)
        QCOMPARE(m_state->settings().preferences().presetWindowHeight(MainPanels::rooms), 340);
}

void TestStatusBarMenuWindowController::savesTheHeightAtTheEndOfADrag()
{
    m_state->store().writeInt(SettingsKeys::activePanel, 2);
    m_controller->setPreferredHeight(300);
    m_controller->show();
    QTRY_COMPARE(m_content->height(), 300);
    HeightGrip* grip = m_controller->window().grip();

    sendMouse(grip, QEvent::MouseButtonPress, QPoint(50, 2));
    sendMouse(grip, QEvent::MouseMove, QPoint(50, 42));
    QVERIFY(!m_state->store().contains(SettingsKeys::preferredWindowHeightScenes)); // not before letting go
    sendMouse(grip, QEvent::MouseButtonRelease, QPoint(50, 42));

    QTRY_COMPARE(m_content->height(), 340);
    QCOMPARE(m_state->store().readInt(SettingsKeys::preferredWindowHeightScenes), 340);
    QCOMPARE(m_state->settings().preferences().presetWindowHeight(MainPanels::scenes), 340);
    QVERIFY(!m_state->store().contains(SettingsKeys::dropDownWidth)); // the width was not touched

    // The grip's trailing corner takes the width along, at most half the screen, and the next opening keeps
    // it.
    const int corner = grip->width() - 4;
    sendMouse(grip, QEvent::MouseButtonPress, QPoint(corner, 2));
    sendMouse(grip, QEvent::MouseMove, QPoint(corner + 100, 12));
    sendMouse(grip, QEvent::MouseButtonRelease, QPoint(corner + 100, 12));
    QTRY_COMPARE(m_controller->window().width(), DropDownWindow::contentWidth + 100);
    QCOMPARE(m_content->height(), 350);
    QCOMPARE(m_state->store().readInt(SettingsKeys::dropDownWidth), DropDownWindow::contentWidth + 100);
    const int half = QGuiApplication::primaryScreen()->availableGeometry().width() / 2;
    sendMouse(grip, QEvent::MouseButtonPress, QPoint(grip->width() - 4, 2));
    sendMouse(grip, QEvent::MouseMove, QPoint(grip->width() + 5000, 2));
    sendMouse(grip, QEvent::MouseButtonRelease, QPoint(grip->width() + 5000, 2));
    QTRY_COMPARE(m_controller->window().width(), half);
    m_controller->closeWithoutFade();
    m_controller->show();
    QCOMPARE(m_controller->window().width(), half);
}

void TestStatusBarMenuWindowController::opensAsWideAsTheContentAsksUpToAThirdOfTheScreen_data()
{
    QTest::addColumn<int>("asked"); // the content's width for its longest name
    QTest::addColumn<int>("shown"); // 0: a third of the screen
    QTest::newRow("short names") << 150 << DropDownWindow::contentWidth;
    QTest::newRow("long names") << 240 << 240; // the offscreen screen is 800 wide
    QTest::newRow("very long names") << 5000 << 0;
}

void TestStatusBarMenuWindowController::opensAsWideAsTheContentAsksUpToAThirdOfTheScreen()
{
    QFETCH(int, asked);
    QFETCH(int, shown);
    /// Content that asks for a width, as the window's content does for its names.
    class Asking final : public QWidget
    {
    public:
        int width = 0;
        QSize sizeHint() const override { return {width, 300}; }
    };
    auto* content = new Asking;
    content->width = asked;
    m_controller = std::make_unique<StatusBarMenuWindowController>(m_state->settings().preferences(), content,
                                                                   [this] { return m_icon; });
    const int third = QGuiApplication::primaryScreen()->availableGeometry().width() / 3;
    m_controller->show();
    QCOMPARE(m_controller->window().width(), shown ? shown : third);

    // A drag of the height alone keeps the width following the names.
    HeightGrip* grip = m_controller->window().grip();
    sendMouse(grip, QEvent::MouseButtonPress, QPoint(20, 2));
    sendMouse(grip, QEvent::MouseMove, QPoint(20, 42));
    sendMouse(grip, QEvent::MouseButtonRelease, QPoint(20, 42));
    QVERIFY(!m_state->store().contains(SettingsKeys::dropDownWidth));
    content->width = 230;
    m_controller->closeWithoutFade();
    m_controller->show();
    QCOMPARE(m_controller->window().width(), 230);

    // A width the user chose wins over the names.
    m_state->settings().preferences().setDropDownWidth(380);
    m_controller->closeWithoutFade();
    m_controller->show();
    QCOMPARE(m_controller->window().width(), 380);
}

void TestStatusBarMenuWindowController::staysOpenOnAClickInsideAndClosesOnLeaving_data()
{
    QTest::addColumn<QString>("leaving");
    QTest::newRow("click outside") << "click outside";
    QTest::newRow("another window takes the focus") << "focus";
    QTest::newRow("Escape") << "Escape";
}

void TestStatusBarMenuWindowController::staysOpenOnAClickInsideAndClosesOnLeaving()
{
    QFETCH(QString, leaving);
    m_controller->show();
    QVERIFY(QTest::qWaitForWindowActive(&m_controller->window()));
    QTest::mouseClick(m_content, Qt::LeftButton, {}, QPoint(100, 100));
    QCoreApplication::processEvents();
    QVERIFY(m_controller->isShown());
    QCOMPARE(m_controller->window().windowOpacity(), 1.0);

    if (leaving == "click outside")
        QTest::mouseClick(m_otherWindow.get(), Qt::LeftButton, {}, QPoint(10, 10));
    else if (leaving == "focus")
        m_otherWindow->activateWindow();
    else
        QTest::keyClick(&m_controller->window(), Qt::Key_Escape);

    QTRY_VERIFY(!m_controller->isShown());
    QTRY_VERIFY(!m_controller->window().isVisible()); // after the fade
    // The tray icon's own click arrives right after such a press: it must not open the window again.
    QVERIFY(leaving != "click outside" || m_controller->closedByOutsideClickJustNow());
}

void TestStatusBarMenuWindowController::opensUnderTheIconNearTheRightEdge()
{
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    m_icon = QRect(available.right() - 23, available.top() + 1, 22, 22);
    m_controller->setPreferredHeight(320);
    m_controller->show();

    const QRect frame = m_controller->window().geometry();
    QCOMPARE(frame.x() + frame.width(), available.right() + 1 - 5);
    QCOMPARE(frame.y(), m_icon->bottom() + 1 + 5);
    QCOMPARE(frame.height(), 320);
}

void TestStatusBarMenuWindowController::opensAtTheContentsHeightWithoutAStoredHeight_data()
{
    QTest::addColumn<int>("content");  // 0: a widget that tells no height
    QTest::addColumn<int>("expected"); // -1: two thirds of the available screen
    QTest::newRow("content of unknown height") << 0 << 280;
    QTest::newRow("short content keeps the minimum") << 90 << 200;
    QTest::newRow("content that fits") << 430 << 430;
    QTest::newRow("long content stops at two thirds of the screen") << 5000 << -1;
}

void TestStatusBarMenuWindowController::opensAtTheContentsHeightWithoutAStoredHeight()
{
    QFETCH(int, content);
    QFETCH(int, expected);
    if (content > 0) {
        auto* layout = new QVBoxLayout(m_content);
        layout->setContentsMargins(0, 0, 0, 0);
        auto* filler = new QWidget;
        filler->setFixedHeight(content);
        layout->addWidget(filler);
    }
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    if (expected < 0)
        expected = available.height() * 2 / 3;
    m_icon = QRect(300, available.top(), 22, 24);
    m_controller->setPreferredHeight(0);
    m_controller->show();

    QCOMPARE(m_controller->window().geometry(), QRect(211, available.top() + 29, 200, expected));
}

void TestStatusBarMenuWindowController::opensAtThePointerWithoutAnIcon_data()
{
    QTest::addColumn<QPoint>("pointer"); // relative to the available screen's top left
    QTest::addColumn<bool>("upwards");
    QTest::newRow("top panel") << QPoint(700, 0) << false;
    QTest::newRow("bottom panel") << QPoint(700, -1) << true; // -1: the last line of the available screen
}

void TestStatusBarMenuWindowController::opensAtThePointerWithoutAnIcon()
{
    QFETCH(QPoint, pointer);
    QFETCH(bool, upwards);
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    const QPoint at = available.topLeft() + QPoint(pointer.x(), pointer.y() < 0 ? available.height() - 1 : 0);
    m_controller->setPointerPosition([at] { return at; });
    m_controller->setPreferredHeight(300);
    m_controller->show();

    const QRect frame = m_controller->window().geometry();
    QCOMPARE(frame.size(), QSize(200, 300));
    QCOMPARE(frame.center().x(), at.x() - 1);
    QCOMPARE(upwards ? frame.bottom() + 1 + 5 : frame.top() - 1 - 5, at.y());
    QVERIFY(available.contains(frame));
    // The height grip is on the edge away from the panel.
    QCOMPARE(m_controller->window().grip()->edge(), upwards ? Qt::TopEdge : Qt::BottomEdge);
}

void TestStatusBarMenuWindowController::topGripOfAnUpwardWindowKeepsItsBottomEdge()
{
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    m_controller->setPointerPosition([available] { return available.bottomLeft() + QPoint(600, 0); });
    m_state->store().writeInt(SettingsKeys::activePanel, 1);
    m_controller->setPreferredHeight(300);
    m_controller->show();
    const QRect before = m_controller->window().geometry();
    HeightGrip* grip = m_controller->window().grip();
    QCOMPARE(grip->geometry().top(), 0);

    drag(grip, {QPointF(50, 2), QPointF(50, -38)});

    const QRect after = m_controller->window().geometry();
    QCOMPARE(after.bottom(), before.bottom());
    QCOMPARE(after.height(), 340);
    QCOMPARE(m_state->store().readInt(SettingsKeys::preferredWindowHeightRooms), 340);
}

void TestStatusBarMenuWindowController::restoresTheStoredPanelBeforeOpening_data()
{
    QTest::addColumn<bool>("stored");
    QTest::addColumn<int>("panel");
    QTest::newRow("rooms") << true << 1;
    QTest::newRow("scenes") << true << 2;
    QTest::newRow("nothing stored keeps lights") << false << 0;
}

void TestStatusBarMenuWindowController::restoresTheStoredPanelBeforeOpening()
{
    QFETCH(bool, stored);
    QFETCH(int, panel);
    if (stored)
        m_state->store().writeInt(SettingsKeys::activePanel, panel);
    m_controller->restoreActivePanel();
    QCOMPARE(int(m_state->settings().preferences().activeMainPanel()), panel);
}

void TestStatusBarMenuWindowController::shapeHoldsOnlyFullyPaintedPixels_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("usual") << QSize(200, 280);
    QTest::newRow("minimum") << QSize(200, 200);
    QTest::newRow("odd height") << QSize(200, 417);
}

void TestStatusBarMenuWindowController::shapeHoldsOnlyFullyPaintedPixels()
{
    // The content's background as the window shows it: an antialiased rounded rectangle of radius 10.
    QFETCH(QSize, size);
    QImage drawn(size, QImage::Format_ARGB32_Premultiplied);
    drawn.fill(Qt::transparent);
    {
        QPainter painter(&drawn);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawRoundedRect(QRectF(QPointF(0, 0), QSizeF(size)), 10, 10);
    }
    const QRegion shape = DropDownWindow::fullyCoveredRegion(size, DropDownWindow::cornerRadius);
    int outside = 0;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool opaque = qAlpha(drawn.pixel(x, y)) == 255;
            // A pixel in the shape that is not fully painted is what shows black without a compositor.
            QVERIFY2(!shape.contains(QPoint(x, y)) || opaque, qPrintable(u"%1,%2"_qs.arg(x).arg(y)));
            outside += opaque && !shape.contains(QPoint(x, y));
        }
    }
    QCOMPARE(outside, 0); // and nothing painted is cut away
}

QTEST_MAIN(TestStatusBarMenuWindowController)
#include "tst_statusbarmenuwindowcontroller.moc"
