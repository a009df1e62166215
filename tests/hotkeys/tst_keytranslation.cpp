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
    QTest::newRow("every modifier") << qint64(40) << all << QStringLiteral("⌃⌥⇧⌘K");
    QTest::newRow("command F1") << qint64(122) << Shortcut::command << QStringLiteral("⌘F1");
    QTest::newRow("control command L")
        << qint64(37) << (Shortcut::control | Shortcut::command) << QStringLiteral("⌃⌘L");
    QTest::newRow("shift option") << qint64(18) << (Shortcut::shift | Shortcut::option)
                                  << QStringLiteral("⌥⇧1");
    QTest::newRow("punctuation") << qint64(47) << Shortcut::control << QStringLiteral("⌃.");
    QTest::newRow("keypad digit") << qint64(83) << Shortcut::option << QStringLiteral("⌥1");
    QTest::newRow("a code with no key") << qint64(10) << Shortcut::control << QStringLiteral("⌃\uFFFD");

    // The 35 special keys show the same text on every layout.
    const std::pair<qint64, const char16_t*> special[] = {
        {36, u"↩"},    {51, u"⌫"},    {117, u"⌦"},   {119, u"↘"},   {53, u"⎋"},    {114, u"?⃝"},
        {115, u"↖"},   {49, u"⎵"},    {48, u"⇥"},    {116, u"⇞"},   {121, u"⇟"},   {126, u"↑"},
        {124, u"→"},   {125, u"↓"},   {123, u"←"},   {122, u"F1"},  {120, u"F2"},  {99, u"F3"},
        {118, u"F4"},  {96, u"F5"},   {97, u"F6"},   {98, u"F7"},   {100, u"F8"},  {101, u"F9"},
        {109, u"F10"}, {103, u"F11"}, {111, u"F12"}, {105, u"F13"}, {107, u"F14"}, {113, u"F15"},
        {106, u"F16"}, {64, u"F17"},  {79, u"F18"},  {80, u"F19"},  {90, u"F20"},
    };
    for (const auto& [code, text] : special)
        QTest::addRow("special %lld", code) << code << qint64(0) << QString::fromUtf16(text);
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
