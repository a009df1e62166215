#include "TestSupport.h"
#include "preferences/window/PaneTabController.h"
#include "preferences/window/PausableWindow.h"
#include "preferences/window/PreferencesWindowController.h"

#include <QApplication>
#include <QComboBox>
#include <QShortcut>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

class TestPreferencesWindowController final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void showPicksThePane_data();
    void showPicksThePane();
    void titleIsThePaneTitleOrTheApplicationName();
    void switchingResizesWithInputPaused_data();
    void switchingResizesWithInputPaused();
    void escapeAndTheCloseShortcutCloseIt_data();
    void escapeAndTheCloseShortcutCloseIt();
    void theFrameIsKeptAcrossRestarts();

private:
    /// Panes of different sizes, so that every switch resizes the window.
    static QList<Pane> panes(int count = 3)
    {
        QList<Pane> list;
        const QStringList ids{"general", "advanced", "lights"};
        for (int i = 0; i < count; ++i) {
            auto* content = new QWidget;
            content->setFixedSize(300 + 60 * i, 120 + 100 * i);
            list.append({ids.at(i), ids.at(i).toUpper(), QIcon(), content});
        }
        return list;
    }
    void create(QList<Pane> list, PaneStyle style = PaneStyle::toolbarItems, bool hidesToolbar = true)
    {
        m_controller =
            std::make_unique<PreferencesWindowController>(std::move(list), style, true, hidesToolbar);
    }
    PaneTabController& tabs() const { return m_controller->tabViewController(); }
    QString shownPane() const { return tabs().preferencePanes().at(*tabs().activeTab()).identifier; }
    /// The button that chooses the pane at `index`, in either style.
    QAbstractButton* paneButton(int index) const
    {
        if (tabs().style() == PaneStyle::segmentedControl)
            return m_controller->window().findChild<QToolButton*>(QStringLiteral("segment-%1").arg(index));
        return m_controller->window().findChild<QToolButton*>(tabs().preferencePanes().at(index).identifier +
                                                              QStringLiteral("PaneButton"));
    }

    std::unique_ptr<PreferencesWindowController> m_controller;
};

void TestPreferencesWindowController::initTestCase()
{
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Glowdeck"));
}

void TestPreferencesWindowController::cleanup()
{
    m_controller.reset();
}

void TestPreferencesWindowController::showPicksThePane_data()
{
    QTest::addColumn<QString>("earlier"); // shown before, "" for none
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("shown"); // its title is the identifier in capitals

    const auto row = [](const char* name, const char* earlier, const char* asked, const char* shown) {
        QTest::newRow(name) << QString(earlier) << QString(asked) << QString(shown);
    };
    row("first show", "", "", "general");
    row("by identifier", "", "lights", "lights");
    row("unknown identifier", "", "hotkeys", "general");
    row("the last one again", "lights", "", "lights");
    row("another one", "lights", "advanced", "advanced");
    row("unknown after another", "lights", "nope", "general");
}

void TestPreferencesWindowController::showPicksThePane()
{
    QFETCH(QString, earlier);
    QFETCH(QString, asked);
    QFETCH(QString, shown);
    create(panes());
    if (!earlier.isEmpty()) {
        m_controller->show(earlier);
        m_controller->window().close();
    }

    m_controller->show(asked);

    QVERIFY(m_controller->window().isVisible());
    QCOMPARE(shownPane(), shown);
    QVERIFY(paneButton(*tabs().activeTab())->isChecked());
    QCOMPARE(m_controller->window().windowTitle(), u"Glowdeck — "_qs + shown.toUpper());
}

void TestPreferencesWindowController::titleIsThePaneTitleOrTheApplicationName()
{
    create(panes(1));
    m_controller->show();
    QCOMPARE(m_controller->window().windowTitle(), QStringLiteral("Glowdeck Preferences"));
    QVERIFY(!tabs().toolbar().isVisible());

    create(panes(1), PaneStyle::toolbarItems, false);
    m_controller->show();
    QVERIFY(tabs().toolbar().isVisible());
}

void TestPreferencesWindowController::switchingResizesWithInputPaused_data()
{
    QTest::addColumn<PaneStyle>("style");
    QTest::newRow("toolbar items") << PaneStyle::toolbarItems;
    QTest::newRow("segmented control") << PaneStyle::segmentedControl;
}

void TestPreferencesWindowController::switchingResizesWithInputPaused()
{
    QFETCH(PaneStyle, style);
    create(panes(), style);
    m_controller->show();
    PausableWindow& window = m_controller->window();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QPoint corner = window.geometry().topLeft();
    const int toolbar = tabs().toolbar().height();

    QTest::mouseClick(paneButton(2), Qt::LeftButton);

    QVERIFY(tabs().isResizing());
    QVERIFY(!window.isUserInteractionEnabled());
    QCOMPARE(window.windowTitle(), u"Glowdeck — LIGHTS"_qs);
    // A second click while the window moves is dropped.
    QTest::mouseClick(paneButton(1), Qt::LeftButton);
    QTRY_VERIFY(!tabs().isResizing());
    QCOMPARE(shownPane(), QStringLiteral("lights"));
    QVERIFY(window.isUserInteractionEnabled());
    QCOMPARE(window.size(), QSize(420, 320 + toolbar));
    QCOMPARE(window.geometry().topLeft(), corner);

    QTest::mouseClick(paneButton(1), Qt::LeftButton);
    QTRY_VERIFY(!tabs().isResizing());
    QCOMPARE(shownPane(), QStringLiteral("advanced"));
    QCOMPARE(window.size(), QSize(360, 220 + toolbar));
}

void TestPreferencesWindowController::escapeAndTheCloseShortcutCloseIt_data()
{
    QTest::addColumn<QKeySequence>("keys");
    QTest::newRow("Escape") << QKeySequence(Qt::Key_Escape);
    QTest::newRow("close") << QKeySequence(QKeySequence::Close);
}

void TestPreferencesWindowController::escapeAndTheCloseShortcutCloseIt()
{
    QFETCH(QKeySequence, keys);
    create(panes());
    m_controller->show();
    QVERIFY(QTest::qWaitForWindowActive(&m_controller->window()));

    // With a list open, the keys close the list only, and the window stays. The list closes on the keys'
    // shortcut check and leaves them to the window's shortcuts, as on X11.
    auto* picker = new QComboBox(m_controller->tabViewController().toolbar().parentWidget());
    picker->addItems({u"Brighter"_qs, u"Darker"_qs});
    picker->show();
    picker->showPopup();
    QTRY_VERIFY(QApplication::activePopupWidget());
    QTest::keySequence(QApplication::activePopupWidget()->windowHandle(), keys);
    QTRY_VERIFY(!QApplication::activePopupWidget());
    QVERIFY(m_controller->window().isVisible());
    delete picker;

    // A person's next key comes at a later turn of the event loop; this platform leaves no window active
    // after a list closed by Escape.
    m_controller->window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_controller->window()));
    QTest::keySequence(&m_controller->window(), keys);

    QVERIFY(!m_controller->window().isVisible());
}

void TestPreferencesWindowController::theFrameIsKeptAcrossRestarts()
{
    TestSettings state;
    const QString name = QStringLiteral("com.brambleworks.Glowdeck.PreferencesFrame");
    create(panes());
    m_controller->setFrameAutosaveName(name, &state.settings().preferences());
    m_controller->show();
    m_controller->window().move(123, 77);
    m_controller->window().close();
    QVERIFY(state.store().readString(name));

    state.reopen();
    create(panes());
    m_controller->setFrameAutosaveName(name, &state.settings().preferences());
    m_controller->show(QStringLiteral("lights"));

    QCOMPARE(m_controller->window().pos(), QPoint(123, 77));

    // A damaged value is passed over.
    state.store().writeString(name, QStringLiteral("not a frame"));
    create(panes());
    m_controller->setFrameAutosaveName(name, &state.settings().preferences());
    m_controller->show();
    QVERIFY(m_controller->window().isVisible());
    m_controller.reset(); // before the store it saves to
}

QTEST_MAIN(TestPreferencesWindowController)
#include "tst_preferenceswindowcontroller.moc"
