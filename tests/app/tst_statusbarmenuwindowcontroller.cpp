#include "TestSupport.h"
#include "app/DropDownWindow.h"
#include "app/HeightGrip.h"
#include "app/StatusBarMenuWindowController.h"
#include "state/SettingsKeys.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QTest>

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
    void closesOnAClickOutside();
    void staysOpenOnAClickInside();
    void closesWhenAnotherWindowTakesTheFocus();
    void opensUnderTheIconNearTheRightEdge();
    void keepsItsMinimumHeightForAZeroHeight();

private:
    void sendMouse(QWidget* widget, QEvent::Type type, QPoint local, Qt::MouseButtons buttons);

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
    m_controller = std::make_unique<StatusBarMenuWindowController>(m_state->settings(), m_content,
                                                                   [this] { return m_icon; });
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

void TestStatusBarMenuWindowController::sendMouse(QWidget* widget, QEvent::Type type, QPoint local,
                                                  Qt::MouseButtons buttons)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, QPointF(local), QPointF(widget->mapToGlobal(local)), button, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
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
        QCOMPARE(m_state->settings().presetWindowHeightRooms(), 340);
}

void TestStatusBarMenuWindowController::savesTheHeightAtTheEndOfADrag()
{
    m_state->store().writeInt(SettingsKeys::activePanel, 2);
    m_controller->setPreferredHeight(300);
    m_controller->show();
    QTRY_COMPARE(m_content->height(), 300);
    HeightGrip* grip = m_controller->window().grip();

    sendMouse(grip, QEvent::MouseButtonPress, QPoint(50, 2), Qt::LeftButton);
    sendMouse(grip, QEvent::MouseMove, QPoint(50, 42), Qt::LeftButton);
    QVERIFY(!m_state->store().contains(SettingsKeys::preferredWindowHeightScenes)); // not before letting go
    sendMouse(grip, QEvent::MouseButtonRelease, QPoint(50, 42), Qt::NoButton);

    QTRY_COMPARE(m_content->height(), 340);
    QCOMPARE(m_state->store().readInt(SettingsKeys::preferredWindowHeightScenes), 340);
    QCOMPARE(m_state->settings().presetWindowHeightScenes(), 340);
}

void TestStatusBarMenuWindowController::closesOnAClickOutside()
{
    m_controller->show();
    QVERIFY(QTest::qWaitForWindowExposed(&m_controller->window()));

    QTest::mouseClick(m_otherWindow.get(), Qt::LeftButton, {}, QPoint(10, 10));

    QTRY_VERIFY(!m_controller->isShown());
    QTRY_VERIFY(!m_controller->window().isVisible()); // after the fade
    // The tray icon's own click arrives right after such a press: it must not open the window again.
    QVERIFY(m_controller->closedByOutsideClickJustNow());
}

void TestStatusBarMenuWindowController::staysOpenOnAClickInside()
{
    m_controller->show();
    QVERIFY(QTest::qWaitForWindowExposed(&m_controller->window()));

    QTest::mouseClick(m_content, Qt::LeftButton, {}, QPoint(100, 100));
    QCoreApplication::processEvents();

    QVERIFY(m_controller->isShown());
    QVERIFY(m_controller->window().isVisible());
    QCOMPARE(m_controller->window().windowOpacity(), 1.0);
}

void TestStatusBarMenuWindowController::closesWhenAnotherWindowTakesTheFocus()
{
    m_controller->show();
    QVERIFY(QTest::qWaitForWindowActive(&m_controller->window()));

    m_otherWindow->activateWindow();

    QTRY_VERIFY(!m_controller->isShown());
    QTRY_VERIFY(!m_controller->window().isVisible());
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

void TestStatusBarMenuWindowController::keepsItsMinimumHeightForAZeroHeight()
{
    m_icon = QRect(300, 0, 22, 24);
    m_controller->setPreferredHeight(0);
    m_controller->show();

    QCOMPARE(m_controller->window().geometry(), QRect(211, 29, 200, DropDownWindow::minimumWindowHeight));
}

QTEST_MAIN(TestStatusBarMenuWindowController)
#include "tst_statusbarmenuwindowcontroller.moc"
