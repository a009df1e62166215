#include "FakeHotkeyBackend.h"
#include "TestSupport.h"
#include "hotkeys/HotkeyNames.h"
#include "hotkeys/KeyTranslation.h"
#include "hotkeys/recorder/RecorderField.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QMenu>
#include <QMessageBox>
#include <QShortcut>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

using Shortcut = GlobalHotkeys::Shortcut;

namespace {

const Shortcut optionK{40, Shortcut::option};

} // namespace

class TestRecorderField final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void recordsACombinationAndShowsIt_data();
    void recordsACombinationAndShowsIt();
    void showsEveryKeyAsQtWritesIt();
    void refusesAKeyWithoutAModifierAndKeepsRecording_data();
    void refusesAKeyWithoutAModifierAndKeepsRecording();
    void escapeAndTabKeepThePreviousShortcut_data();
    void escapeAndTabKeepThePreviousShortcut();
    void deleteBackspaceAndTheClearButtonClear_data();
    void deleteBackspaceAndTheClearButtonClear();
    void globalShortcutsArePausedExactlyWhileRecording();
    void refusesWhatIsTakenWithAnAlert_data();
    void refusesWhatIsTakenWithAnAlert();

private:
    void startRecording();

    std::unique_ptr<TestSettings> m_state;
    std::unique_ptr<FakeHotkeyBackend> m_backend;
    std::unique_ptr<GlobalHotkeys> m_hotkeys;
    std::unique_ptr<QWidget> m_window;
    RecorderField* m_field = nullptr;
    QLineEdit* m_other = nullptr;
};

void TestRecorderField::init()
{
    m_state = std::make_unique<TestSettings>();
    m_backend = std::make_unique<FakeHotkeyBackend>();
    // Held elsewhere; F12 alone counts as free even so.
    m_backend->taken = {Shortcut{17, Shortcut::control | Shortcut::option}, Shortcut{111, 0}};
    m_hotkeys = std::make_unique<GlobalHotkeys>(m_state->store(), *m_backend);
    m_window = std::make_unique<QWidget>();
    auto* layout = new QVBoxLayout(m_window.get());
    m_field = new RecorderField(*m_hotkeys, HotkeyNames::allLightsOn(), m_window.get());
    m_other = new QLineEdit(m_window.get());
    layout->addWidget(m_field);
    layout->addWidget(m_other);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_other->setFocus();
}

void TestRecorderField::cleanup()
{
    m_window.reset();
    m_hotkeys.reset();
    m_backend.reset();
    m_state.reset();
}

void TestRecorderField::startRecording()
{
    m_field->setFocus();
    QTRY_VERIFY(m_field->isRecording());
    QCOMPARE(m_field->placeholderText(), QStringLiteral("Press shortcut"));
}

void TestRecorderField::recordsACombinationAndShowsIt_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<Shortcut>("stored");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("held"); // the placeholder while only the modifiers are down

    QTest::newRow("ctrl+alt+k") << Qt::Key_K << (Qt::ControlModifier | Qt::AltModifier)
                                << Shortcut{40, Shortcut::control | Shortcut::option}
                                << QStringLiteral("Ctrl+Alt+K") << QStringLiteral("Ctrl+Alt+");
    QTest::newRow("every modifier, shown in the fixed order")
        << Qt::Key_K << (Qt::ShiftModifier | Qt::MetaModifier | Qt::AltModifier | Qt::ControlModifier)
        << Shortcut{40, Shortcut::allModifiers} << QStringLiteral("Meta+Ctrl+Alt+Shift+K")
        << QStringLiteral("Meta+Ctrl+Alt+Shift+");
    QTest::newRow("shift with a function key")
        << Qt::Key_F5 << Qt::KeyboardModifiers(Qt::ShiftModifier) << Shortcut{96, Shortcut::shift}
        << QStringLiteral("Shift+F5") << QStringLiteral("Shift+");
    QTest::newRow("a function key alone") << Qt::Key_F12 << Qt::KeyboardModifiers() << Shortcut{111, 0}
                                          << QStringLiteral("F12") << QStringLiteral("Press shortcut");
    QTest::newRow("a special key") << Qt::Key_Return << Qt::KeyboardModifiers(Qt::ControlModifier)
                                   << Shortcut{36, Shortcut::control} << QStringLiteral("Ctrl+Return")
                                   << QStringLiteral("Ctrl+");
    QTest::newRow("a keypad key") << Qt::Key_1 << (Qt::AltModifier | Qt::KeypadModifier)
                                  << Shortcut{83, Shortcut::option} << QStringLiteral("Alt+Num+1")
                                  << QStringLiteral("Alt+");
}

void TestRecorderField::recordsACombinationAndShowsIt()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(Shortcut, stored);
    QFETCH(QString, shown);
    QFETCH(QString, held);

    m_hotkeys->onKeyUp(HotkeyNames::allLightsOn(), [] {});
    QSignalSpy changed(m_field, &RecorderField::shortcutChanged);
    startRecording();
    // A modifier key QTest leaves the modifiers alone for.
    QTest::keyPress(m_field, Qt::Key_Super_L, modifiers & ~Qt::KeypadModifier);
    QCOMPARE(m_field->placeholderText(), held);
    QTest::keyClick(m_field, key, modifiers);
    QCOMPARE(m_hotkeys->getShortcut(HotkeyNames::allLightsOn()), std::optional(stored));
    QCOMPARE(m_backend->registrations.constLast().first, stored); // registered at once
    QCOMPARE(changed.size(), 1);
    QCOMPARE(m_field->text(), shown);
    QVERIFY(!m_field->isRecording());
    QVERIFY(!m_hotkeys->isPaused());
    QCOMPARE(m_field->toolTip(), shown);
}

void TestRecorderField::showsEveryKeyAsQtWritesIt()
{
    // The text is written without Qt Gui, for glowdeckctl; it must read as QKeySequence writes it.
    for (const qint64 modifiers : {qint64(0), Shortcut::allModifiers, Shortcut::control | Shortcut::shift}) {
        for (qint64 code = 0; code < 128; ++code) {
            const Shortcut shortcut{code, modifiers};
            const std::optional<QKeyCombination> combination = KeyTranslation::qtCombination(shortcut);
            if (!combination)
                continue;
            m_hotkeys->setShortcut(shortcut, HotkeyNames::allLightsOn());
            QCOMPARE(m_field->text(), QKeySequence(*combination).toString(QKeySequence::NativeText));
        }
    }
}

void TestRecorderField::refusesAKeyWithoutAModifierAndKeepsRecording_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");

    QTest::newRow("a letter") << Qt::Key_K << Qt::KeyboardModifiers();
    QTest::newRow("a letter with shift") << Qt::Key_K << Qt::KeyboardModifiers(Qt::ShiftModifier);
    QTest::newRow("a digit") << Qt::Key_1 << Qt::KeyboardModifiers();
    QTest::newRow("a key with no code") << Qt::Key_Print << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("a modifier alone") << Qt::Key_Control << Qt::KeyboardModifiers(Qt::ControlModifier);
}

void TestRecorderField::refusesAKeyWithoutAModifierAndKeepsRecording()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);

    m_hotkeys->setShortcut(optionK, HotkeyNames::allLightsOn());
    startRecording();
    QTest::keyClick(m_field, key, modifiers);
    QVERIFY(m_field->isRecording());
    QVERIFY(m_hotkeys->isPaused());
    QVERIFY(!m_field->alert());
    QCOMPARE(m_hotkeys->getShortcut(HotkeyNames::allLightsOn()), std::optional(optionK));
}

void TestRecorderField::escapeAndTabKeepThePreviousShortcut_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("movesOn"); // to the next field, rather than nowhere
    QTest::newRow("escape") << Qt::Key_Escape << false;
    QTest::newRow("tab") << Qt::Key_Tab << true;
}

void TestRecorderField::escapeAndTabKeepThePreviousShortcut()
{
    QFETCH(Qt::Key, key);
    QFETCH(bool, movesOn);
    m_hotkeys->setShortcut(optionK, HotkeyNames::allLightsOn());
    QCOMPARE(m_field->text(), QStringLiteral("Alt+K"));
    startRecording();
    QCOMPARE(m_field->text(), QString()); // the placeholder says it records
    QTest::keyClick(m_field, key);
    QVERIFY(!m_field->isRecording());
    QVERIFY(!m_field->hasFocus());
    QCOMPARE(m_other->hasFocus(), movesOn);
    QCOMPARE(m_field->text(), QStringLiteral("Alt+K"));
    QCOMPARE(m_field->placeholderText(), QStringLiteral("Record shortcut"));
    QCOMPARE(m_hotkeys->getShortcut(HotkeyNames::allLightsOn()), std::optional(optionK));
}

void TestRecorderField::deleteBackspaceAndTheClearButtonClear_data()
{
    QTest::addColumn<Qt::Key>("key"); // Key_unknown: the clear button
    QTest::newRow("delete") << Qt::Key_Delete;
    QTest::newRow("backspace") << Qt::Key_Backspace;
    QTest::newRow("clear button") << Qt::Key_unknown;
}

void TestRecorderField::deleteBackspaceAndTheClearButtonClear()
{
    QFETCH(Qt::Key, key);
    m_hotkeys->setShortcut(optionK, HotkeyNames::allLightsOn());
    m_hotkeys->onKeyUp(HotkeyNames::allLightsOn(), [] {});
    QSignalSpy changed(m_field, &RecorderField::shortcutChanged);
    if (key == Qt::Key_unknown) {
        auto* clear = m_field->findChild<QAction*>();
        QVERIFY(clear && clear->isVisible());
        clear->trigger();
    } else {
        startRecording();
        QTest::keyClick(m_field, key);
    }
    const QVariant stored = m_state->store().value(QStringLiteral("GlobalHotkeys_allLightsOn"));
    QCOMPARE(stored, QVariant(false));
    QVERIFY(m_backend->registered().isEmpty());
    QCOMPARE(changed.size(), 1);
    QCOMPARE(m_field->text(), QString());
    // Straight on to recording a new one.
    QTRY_VERIFY(m_field->isRecording());
}

void TestRecorderField::globalShortcutsArePausedExactlyWhileRecording()
{
    int runs = 0;
    m_hotkeys->setShortcut(optionK, HotkeyNames::allLightsOff());
    m_hotkeys->onKeyUp(HotkeyNames::allLightsOff(), [&] { ++runs; });
    startRecording();
    QVERIFY(m_hotkeys->isPaused());
    QVERIFY(m_backend->press(optionK));
    QCOMPARE(runs, 0);
    // While it records, the field says so, though it has the focus (which hides a centred placeholder).
    QCOMPARE(m_field->placeholderText(), u"Press shortcut"_qs);
    const auto inked = [this] {
        const QImage image = m_field->grab().toImage();
        const QRgb background = image.pixel(2, image.height() / 2);
        int count = 0;
        for (int x = image.width() / 4; x < image.width() * 3 / 4; ++x)
            count += image.pixel(x, image.height() / 2) != background;
        return count;
    };
    QVERIFY(inked() > 0);

    m_other->setFocus();
    QTRY_VERIFY(!m_field->isRecording());
    QVERIFY(!m_hotkeys->isPaused());
    QVERIFY(m_backend->press(optionK));
    QCOMPARE(runs, 1);
}

void TestRecorderField::refusesWhatIsTakenWithAnAlert_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("explanation");

    const QString usedBy = QStringLiteral("This shortcut cannot be used because ");
    QTest::newRow("a menu item") << Qt::Key_Q << Qt::KeyboardModifiers(Qt::ControlModifier)
                                 << usedBy + QStringLiteral("Glowdeck already uses it for “Quit Glowdeck”.")
                                 << QString();
    QTest::newRow("a window's shortcut")
        << Qt::Key_W << Qt::KeyboardModifiers(Qt::ControlModifier)
        << usedBy + QStringLiteral("Glowdeck already uses it for “Close the window”.") << QString();
    QTest::newRow("the system") << Qt::Key_T << (Qt::ControlModifier | Qt::AltModifier)
                                << usedBy + QStringLiteral("it is already used by the system.")
                                << QStringLiteral("keyboard settings");
}

void TestRecorderField::refusesWhatIsTakenWithAnAlert()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, text);
    QFETCH(QString, explanation);
    QMenu menu;
    menu.addAction(QStringLiteral("&Quit Glowdeck"))->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    auto* close = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), m_window.get());
    close->setWhatsThis(QStringLiteral("Close the window"));

    startRecording();
    QTest::keyClick(m_field, key, modifiers);
    (void)QTest::qWaitFor([this] { return m_field->alert() && m_field->alert()->isVisible(); });
    QMessageBox* alert = m_field->alert();
    QVERIFY(alert);
    QCOMPARE(alert->text(), text);
    QVERIFY(alert->informativeText().contains(explanation));
    QCOMPARE(alert->icon(), QMessageBox::NoIcon);
    QCOMPARE(alert->windowModality(), Qt::WindowModal);
    QVERIFY(!m_hotkeys->isPaused()); // the keyboard is the alert's now
    QCOMPARE(m_hotkeys->getShortcut(HotkeyNames::allLightsOn()), std::nullopt);

    alert->accept();
    QTRY_VERIFY(m_field->isRecording());
}

QTEST_MAIN(TestRecorderField)
#include "tst_recorderfield.moc"
