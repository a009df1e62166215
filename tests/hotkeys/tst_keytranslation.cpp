#include "hotkeys/KeyTranslation.h"

#include <QTest>

using Shortcut = GlobalHotkeys::Shortcut;

class TestKeyTranslation final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsModifiersInTheirFixedOrderAndTheKeysText_data();
    void showsModifiersInTheirFixedOrderAndTheKeysText();
    void readsTheKeysQtReports_data();
    void readsTheKeysQtReports();
    void everyKnownCodeTravelsToQtAndX11AndBack();
};

void TestKeyTranslation::showsModifiersInTheirFixedOrderAndTheKeysText_data()
{
    QTest::addColumn<qint64>("code");
    QTest::addColumn<qint64>("modifiers");
    QTest::addColumn<QString>("shown");

    const qint64 all = Shortcut::command | Shortcut::shift | Shortcut::option | Shortcut::control;
    QTest::newRow("every modifier") << qint64(40) << all << QStringLiteral("Meta+Ctrl+Alt+Shift+K");
    QTest::newRow("super F1") << qint64(122) << Shortcut::command << QStringLiteral("Meta+F1");
    QTest::newRow("control super L") << qint64(37) << (Shortcut::control | Shortcut::command)
                                     << QStringLiteral("Meta+Ctrl+L");
    QTest::newRow("shift alt") << qint64(18) << (Shortcut::shift | Shortcut::option)
                               << QStringLiteral("Alt+Shift+1");
    QTest::newRow("punctuation") << qint64(47) << Shortcut::control << QStringLiteral("Ctrl+.");
    QTest::newRow("keypad digit") << qint64(83) << Shortcut::option << QStringLiteral("Alt+Num+1");
    QTest::newRow("keypad enter") << qint64(76) << Shortcut::control << QStringLiteral("Ctrl+Num+Enter");
    QTest::newRow("a code with no key") << qint64(10) << Shortcut::control << QStringLiteral("Ctrl+\uFFFD");

    // The keys that type no character, by Qt's names for them.
    const std::pair<qint64, const char*> named[] = {
        {36, "Return"}, {51, "Backspace"}, {117, "Del"},  {119, "End"},  {53, "Esc"},     {114, "Ins"},
        {115, "Home"},  {49, "Space"},     {48, "Tab"},   {116, "PgUp"}, {121, "PgDown"}, {126, "Up"},
        {124, "Right"}, {125, "Down"},     {123, "Left"}, {122, "F1"},   {111, "F12"},    {90, "F20"},
    };
    for (const auto& [code, text] : named)
        QTest::addRow("named %lld", code) << code << qint64(0) << QString::fromLatin1(text);
}

void TestKeyTranslation::showsModifiersInTheirFixedOrderAndTheKeysText()
{
    QFETCH(qint64, code);
    QFETCH(qint64, modifiers);
    QFETCH(QString, shown);
    QCOMPARE(KeyTranslation::displayString(Shortcut{code, modifiers}), shown);
}

void TestKeyTranslation::readsTheKeysQtReports_data()
{
    QTest::addColumn<QKeyCombination>("pressed");
    QTest::addColumn<std::optional<Shortcut>>("expected");

    QTest::newRow("super+shift+f5") << QKeyCombination(Qt::MetaModifier | Qt::ShiftModifier, Qt::Key_F5)
                                    << std::optional(Shortcut{96, Shortcut::command | Shortcut::shift});
    QTest::newRow("shifted symbol: the key it is on")
        << QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Exclam)
        << std::optional(Shortcut{18, Shortcut::control | Shortcut::shift});
    QTest::newRow("backtab is tab") << QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier,
                                                       Qt::Key_Backtab)
                                    << std::optional(Shortcut{48, Shortcut::control | Shortcut::shift});
    QTest::newRow("keypad 1") << QKeyCombination(Qt::AltModifier | Qt::KeypadModifier, Qt::Key_1)
                              << std::optional(Shortcut{83, Shortcut::option});
    QTest::newRow("keypad home without num lock is home")
        << QKeyCombination(Qt::AltModifier | Qt::KeypadModifier, Qt::Key_Home)
        << std::optional(Shortcut{115, Shortcut::option});
    QTest::newRow("insert is where help is") << QKeyCombination(Qt::ControlModifier, Qt::Key_Insert)
                                             << std::optional(Shortcut{114, Shortcut::control});
    QTest::newRow("a letter of another script")
        << QKeyCombination(Qt::ControlModifier, Qt::Key(0x043a)) << std::optional<Shortcut>();
    QTest::newRow("a modifier alone")
        << QKeyCombination(Qt::ControlModifier, Qt::Key_Control) << std::optional<Shortcut>();
}

void TestKeyTranslation::readsTheKeysQtReports()
{
    QFETCH(QKeyCombination, pressed);
    QFETCH(std::optional<Shortcut>, expected);
    QCOMPARE(KeyTranslation::shortcut(pressed), expected);
}

void TestKeyTranslation::everyKnownCodeTravelsToQtAndX11AndBack()
{
    int known = 0;
    for (qint64 code = 0; code < 128; ++code) {
        const Shortcut shortcut{code, Shortcut::control | Shortcut::shift};
        const std::optional<QKeyCombination> combination = KeyTranslation::qtCombination(shortcut);
        if (!combination)
            continue;
        ++known;
        QCOMPARE(KeyTranslation::shortcut(*combination), std::optional(shortcut));
        QVERIFY2(KeyTranslation::x11Keysym(code).has_value(), qPrintable(QString::number(code)));
        QVERIFY(!KeyTranslation::x11KeysymName(code).isEmpty());
        QVERIFY(!KeyTranslation::keyText(code).contains(QChar(0xFFFD)));
    }
    // Letters, digits, punctuation, the keypad, the 35 special keys.
    QCOMPARE(known, 26 + 10 + 11 + 17 + 35);
}

QTEST_GUILESS_MAIN(TestKeyTranslation)
#include "tst_keytranslation.moc"
