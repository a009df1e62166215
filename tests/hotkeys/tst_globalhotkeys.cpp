#include "FakeHotkeyBackend.h"
#include "TestSupport.h"
#include "hotkeys/GlobalHotkeys.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using Shortcut = GlobalHotkeys::Shortcut;
using Name = GlobalHotkeys::Name;

namespace {

const Name first{QStringLiteral("first"), std::nullopt, QStringLiteral("The first")};
const Name second{QStringLiteral("second"), std::nullopt, QStringLiteral("The second")};
const Shortcut controlCommandL{37, Shortcut::control | Shortcut::command};
const Shortcut optionK{40, Shortcut::option};

} // namespace

class TestGlobalHotkeys final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void readsTheStoredForms_data();
    void readsTheStoredForms();
    void writesAShortcutAsJsonAndAClearedOneAsFalse();
    void aDefaultIsStoredOnlyWhereNothingIsStored();
    void everyChangeIsAnnounced();
    void aSharedCombinationIsRegisteredOnceAndRunsEveryName();
    void aNewCombinationReplacesTheOldOneAtOnce();
    void removeAllHandlersGivesEverythingBack();
    void nothingRunsWhilePaused();
    void aRefusedCombinationFailsQuietly();
    void anUnreadableEntryIsReportedOnceAndKept();

private:
    std::unique_ptr<TestSettings> m_state;
    std::unique_ptr<FakeHotkeyBackend> m_backend;
    std::unique_ptr<GlobalHotkeys> m_hotkeys;
};

void TestGlobalHotkeys::init()
{
    m_state = std::make_unique<TestSettings>();
    m_backend = std::make_unique<FakeHotkeyBackend>();
    m_hotkeys = std::make_unique<GlobalHotkeys>(m_state->store(), *m_backend);
}

void TestGlobalHotkeys::readsTheStoredForms_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<std::optional<Shortcut>>("expected");

    const std::optional<Shortcut> none;
    QTest::newRow("shortcut") << QVariant(QStringLiteral(R"({"carbonKeyCode":37,"carbonModifiers":4352})"))
                              << std::optional(controlCommandL);
    QTest::newRow("members in another order, blanks, an extra member")
        << QVariant(QStringLiteral(R"( { "extra": 1, "carbonModifiers": 2048, "carbonKeyCode": 40 } )"))
        << std::optional(optionK);
    QTest::newRow("cleared") << QVariant(false) << none;
    QTest::newRow("absent") << QVariant() << none;
    QTest::newRow("true") << QVariant(true) << none;
    QTest::newRow("a number, not a string") << QVariant(37) << none;
    QTest::newRow("not JSON") << QVariant(QStringLiteral("ctrl+alt+k")) << none;
    QTest::newRow("an array") << QVariant(QStringLiteral("[37,4352]")) << none;
    QTest::newRow("a member missing") << QVariant(QStringLiteral(R"({"carbonKeyCode":37})")) << none;
    QTest::newRow("a fraction") << QVariant(QStringLiteral(R"({"carbonKeyCode":37.5,"carbonModifiers":0})"))
                                << none;
    QTest::newRow("negative") << QVariant(QStringLiteral(R"({"carbonKeyCode":-1,"carbonModifiers":0})"))
                              << none;
    QTest::newRow("beyond 32 bits") << QVariant(QStringLiteral(
                                           R"({"carbonKeyCode":4294967296,"carbonModifiers":0})"))
                                    << none;
    QTest::newRow("a code as text") << QVariant(
                                           QStringLiteral(R"({"carbonKeyCode":"37","carbonModifiers":0})"))
                                    << none;
}

void TestGlobalHotkeys::readsTheStoredForms()
{
    QFETCH(QVariant, stored);
    QFETCH(std::optional<Shortcut>, expected);
    if (stored.isValid())
        m_state->store().setValue(QStringLiteral("GlobalHotkeys_first"), stored);

    QCOMPARE(m_hotkeys->getShortcut(first), expected);
    // What the settings file gives back after a restart reads the same.
    m_state->reopen();
    QCOMPARE(GlobalHotkeys::readShortcut(m_state->store(), first.rawValue), expected);
}

void TestGlobalHotkeys::writesAShortcutAsJsonAndAClearedOneAsFalse()
{
    m_hotkeys->setShortcut(controlCommandL, first);
    QCOMPARE(m_state->store().value(QStringLiteral("GlobalHotkeys_first")),
             QVariant(QStringLiteral(R"({"carbonKeyCode":37,"carbonModifiers":4352})")));

    m_hotkeys->setShortcut(std::nullopt, first);
    const QVariant cleared = m_state->store().value(QStringLiteral("GlobalHotkeys_first"));
    QCOMPARE(cleared.typeId(), QMetaType::Bool);
    QCOMPARE(cleared.toBool(), false);
    QVERIFY(!m_state->store().contains(QStringLiteral("GlobalHotkeys_second")));
}

void TestGlobalHotkeys::aDefaultIsStoredOnlyWhereNothingIsStored()
{
    const Name withDefault{QStringLiteral("first"), optionK, {}};
    m_hotkeys->setShortcut(std::nullopt, withDefault);
    m_hotkeys->applyDefault(withDefault);
    QCOMPARE(m_hotkeys->getShortcut(withDefault), std::nullopt);

    const Name fresh{QStringLiteral("second"), optionK, {}};
    m_hotkeys->applyDefault(fresh);
    QCOMPARE(m_hotkeys->getShortcut(fresh), std::optional(optionK));
}

void TestGlobalHotkeys::everyChangeIsAnnounced()
{
    QSignalSpy changed(m_hotkeys.get(), &GlobalHotkeys::shortcutByNameDidChange);
    m_hotkeys->setShortcut(optionK, first);
    m_hotkeys->setShortcut(std::nullopt, first);
    m_hotkeys->setShortcut(optionK, second);
    QCOMPARE(changed.size(), 3);
    QCOMPARE(changed.at(0).at(0).toString(), first.rawValue);
    QCOMPARE(changed.at(1).at(0).toString(), first.rawValue);
    QCOMPARE(changed.at(2).at(0).toString(), second.rawValue);
}

void TestGlobalHotkeys::aSharedCombinationIsRegisteredOnceAndRunsEveryName()
{
    m_hotkeys->setShortcut(optionK, first);
    m_hotkeys->setShortcut(optionK, second);
    QVERIFY(m_backend->registrations.isEmpty()); // nothing without a handler

    QStringList ran;
    m_hotkeys->onKeyUp(first, [&] { ran << QStringLiteral("first up"); });
    m_hotkeys->onKeyDown(first, [&] { ran << QStringLiteral("first down"); });
    m_hotkeys->onKeyUp(second, [&] { ran << QStringLiteral("second up"); });
    m_hotkeys->onKeyUp(first, [&] { ran << QStringLiteral("first up again"); });
    QCOMPARE(m_backend->registered(), QList<Shortcut>{optionK});
    QCOMPARE(m_backend->registrations.size(), 1);
    QCOMPARE(m_backend->registrations.first().second, QStringLiteral("The first"));

    QVERIFY(m_backend->press(optionK));
    QCOMPARE(ran, (QStringList{QStringLiteral("first down"), QStringLiteral("first up"),
                               QStringLiteral("first up again"), QStringLiteral("second up")}));
}

void TestGlobalHotkeys::aNewCombinationReplacesTheOldOneAtOnce()
{
    int firstRuns = 0;
    int secondRuns = 0;
    m_hotkeys->onKeyUp(first, [&] { ++firstRuns; });
    m_hotkeys->onKeyUp(second, [&] { ++secondRuns; });
    m_hotkeys->setShortcut(optionK, first);
    m_hotkeys->setShortcut(optionK, second);
    QCOMPARE(m_backend->registered(), QList<Shortcut>{optionK});

    // The second name still uses Alt+K: it stays registered, and a press runs only that name now.
    m_hotkeys->setShortcut(controlCommandL, first);
    QCOMPARE(m_backend->registered().size(), 2);
    QVERIFY(m_backend->press(optionK));
    QCOMPARE(firstRuns, 0);
    QCOMPARE(secondRuns, 1);

    m_hotkeys->setShortcut(std::nullopt, second);
    QCOMPARE(m_backend->registered(), QList<Shortcut>{controlCommandL});
    QVERIFY(!m_backend->press(optionK));
    QVERIFY(m_backend->press(controlCommandL));
    QCOMPARE(firstRuns, 1);
}

void TestGlobalHotkeys::removeAllHandlersGivesEverythingBack()
{
    int runs = 0;
    m_hotkeys->setShortcut(optionK, first);
    m_hotkeys->setShortcut(controlCommandL, second);
    m_hotkeys->onKeyDown(first, [&] { ++runs; });
    m_hotkeys->onKeyUp(second, [&] { ++runs; });
    QCOMPARE(m_backend->registered().size(), 2);

    m_hotkeys->removeAllHandlers();
    QVERIFY(m_backend->registered().isEmpty());
    // Without handlers, a new shortcut is stored but not registered.
    m_hotkeys->setShortcut(optionK, second);
    QVERIFY(m_backend->registered().isEmpty());
    QCOMPARE(runs, 0);
}

void TestGlobalHotkeys::nothingRunsWhilePaused()
{
    int runs = 0;
    m_hotkeys->setShortcut(optionK, first);
    m_hotkeys->onKeyUp(first, [&] { ++runs; });
    m_hotkeys->onKeyDown(first, [&] { ++runs; });

    m_hotkeys->setPaused(true);
    QVERIFY(m_backend->press(optionK));
    QCOMPARE(runs, 0);
    m_hotkeys->setPaused(false);
    QVERIFY(m_backend->press(optionK));
    QCOMPARE(runs, 2);
}

void TestGlobalHotkeys::aRefusedCombinationFailsQuietly()
{
    m_backend->taken = {optionK};
    PrintedLines printed;
    m_hotkeys->setShortcut(optionK, first);
    m_hotkeys->onKeyUp(first, [] {});
    QVERIFY(m_backend->registered().isEmpty());
    QVERIFY(!m_hotkeys->isRegistered(optionK));
    QVERIFY(printed.lines().isEmpty());
    QVERIFY(m_hotkeys->isTakenBySystem(optionK));

    // A combination of our own is never "taken", even where the desktop lists it.
    m_hotkeys->setShortcut(controlCommandL, first);
    m_backend->taken.append(controlCommandL);
    QVERIFY(!m_hotkeys->isTakenBySystem(controlCommandL));
}

void TestGlobalHotkeys::anUnreadableEntryIsReportedOnceAndKept()
{
    const QString key = QStringLiteral("GlobalHotkeys_first");
    m_state->store().writeString(key, QStringLiteral("ctrl+k"));
    PrintedLines printed;
    m_hotkeys->onKeyUp(first, [] {});
    m_hotkeys->onKeyDown(first, [] {});
    m_hotkeys->onKeyUp(second, [] {}); // never set: nothing to say
    QCOMPARE(printed.lines().size(), 1);
    QVERIFY(printed.lines().first().contains(key));
    QCOMPARE(m_state->store().value(key), QVariant(QStringLiteral("ctrl+k")));
}

QTEST_GUILESS_MAIN(TestGlobalHotkeys)
#include "tst_globalhotkeys.moc"
