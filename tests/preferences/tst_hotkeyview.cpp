#include "HotkeyBench.h"
#include "hotkeys/recorder/RecorderField.h"
#include "i18n/Translations.h"
#include "preferences/panes/GroupActionPicker.h"
#include "preferences/panes/HotkeyView.h"
#include "preferences/panes/SegmentedControl.h"
#include "state/BridgeHome.h"
#include "state/SettingsKeys.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QLocale>
#include <QTest>

#include <memory>

class TestHotkeyView final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void withNoRoomsEachPickerOffersOnlyNoAction();
    void aPickerStoresItsChoiceInTheSlotOneBelowItsNumber();
    void aPickerKeepsAChoiceForARoomTheBridgeDoesNotList();
    void aPickerListsTheRoomsOfEveryBridgeAndFollowsThem();
    void aPickerGroupsTheActionsUnderEachRoomAndTheFilterNarrowsThem();
    void stepSizeIsStoredAtOnce_data();
    void stepSizeIsStoredAtOnce();
    void saysSoWhereTheDesktopHasNoGlobalShortcuts();

private:
    void build();
    GroupActionPicker* picker(int number) const
    {
        return m_view->findChild<GroupActionPicker*>(QStringLiteral("groupActionPicker%1").arg(number));
    }

    std::unique_ptr<HotkeyBench> m_bench;
    std::unique_ptr<HotkeyView> m_view;
};

void TestHotkeyView::initTestCase()
{
    // The headings count lamps in English ("1 lamp", "3 lamps"), as the program speaks it in an English
    // locale.
    Translations::install(QLocale(QLocale::English));
}

void TestHotkeyView::init()
{
    m_bench = std::make_unique<HotkeyBench>();
}

void TestHotkeyView::cleanup()
{
    m_view.reset();
    m_bench.reset();
}

void TestHotkeyView::build()
{
    m_view = std::make_unique<HotkeyView>(m_bench->settings().preferences(), m_bench->hotkeys(),
                                          m_bench->actions());
    m_view->show();
}

void TestHotkeyView::withNoRoomsEachPickerOffersOnlyNoAction()
{
    build();
    for (int number = 1; number <= 5; ++number) {
        GroupActionPicker* slot = picker(number);
        QVERIFY(slot);
        QCOMPARE(slot->count(), 1);
        QCOMPARE(slot->currentText(), QStringLiteral("(No action)"));
        QCOMPARE(slot->selectedAction(), QStringLiteral("no_action"));
    }
}

void TestHotkeyView::aPickerStoresItsChoiceInTheSlotOneBelowItsNumber()
{
    m_bench->setBridge(u"127.0.0.1:9"_qs, u"key"_qs);
    m_bench->setRooms({QStringLiteral("1"), QStringLiteral("2")},
                      {QStringLiteral("Kitchen"), QStringLiteral("Hall")});
    build();
    QCOMPARE(picker(1)->count(), 11); // no action, and a heading and four actions per room

    for (const int number : {1, 5}) {
        const int index = picker(number)->findText(QStringLiteral("Hall Darker"));
        picker(number)->setCurrentIndex(index);
        Q_EMIT picker(number)->activated(index);
    }
    SettingsStore& store = m_bench->store();
    QCOMPARE(store.readString(QStringLiteral("hotkeyCustomGroupAction0")),
             std::optional<QString>("001788FFFE6A3B2C/2_darker"));
    QCOMPARE(store.readString(QStringLiteral("hotkeyCustomGroupAction4")),
             std::optional<QString>("001788FFFE6A3B2C/2_darker"));
    QVERIFY(!store.contains(QStringLiteral("hotkeyCustomGroupAction5")));
    // Nothing is registered again: the choice is read at the next press.
    QVERIFY(m_bench->fake().registrations.isEmpty());
}

void TestHotkeyView::aPickerKeepsAChoiceForARoomTheBridgeDoesNotList()
{
    m_bench->store().writeString(QStringLiteral("hotkeyCustomGroupAction1"), QStringLiteral("7_on"));
    m_bench->setRooms({QStringLiteral("1")}, {QStringLiteral("Kitchen")});
    build();
    GroupActionPicker* second = picker(2);
    QCOMPARE(second->count(), 7);
    QCOMPARE(second->currentText(), QStringLiteral("7_on (room not found)"));

    // A refresh brings new records of the same rooms: the list stays as it is.
    QAbstractItemModel* model = second->model();
    m_bench->setRooms({QStringLiteral("1")}, {QStringLiteral("Kitchen")});
    QCOMPARE(second->model(), model);
    QCOMPARE(second->count(), 7);
    // The room comes back: the stored choice is an ordinary one again, and still chosen.
    m_bench->setRooms({QStringLiteral("1"), QStringLiteral("7")},
                      {QStringLiteral("Kitchen"), QStringLiteral("Porch")});
    QCOMPARE(second->count(), 11);
    QCOMPARE(second->currentText(), QStringLiteral("Porch On"));
    QCOMPARE(m_bench->store().readString(QStringLiteral("hotkeyCustomGroupAction1")),
             std::optional<QString>("7_on"));
}

void TestHotkeyView::aPickerListsTheRoomsOfEveryBridgeAndFollowsThem()
{
    // Chosen before there were several bridges: the first bridge's living room.
    m_bench->store().writeString(u"hotkeyCustomGroupAction1"_qs, u"1_off"_qs);
    m_bench->setBridge(u"127.0.0.1:9"_qs, u"key"_qs);
    m_bench->settings().setBridgeName(u"Downstairs"_qs);
    m_bench->setRooms({u"1"_qs, u"2"_qs}, {u"Living room"_qs, u"Kitchen"_qs});
    build();
    GroupActionPicker* second = picker(2);
    QCOMPARE(second->count(), 11);
    QCOMPARE(second->currentText(), u"Living room Off"_qs);

    TestSettings upstairs;
    upstairs.settings().setBridgeContact(u"http"_qs, u"001788FFFE9C4D5E"_qs, {});
    upstairs.settings().setBridgeName(u"Upstairs"_qs);
    upstairs.settings().home().setGroups(
        {{.group_id = u"1"_qs, .name = u"Living room"_qs}, {.group_id = u"3"_qs, .name = u"Bathroom"_qs}});
    BridgeNetwork network;
    BridgeSession& session =
        m_bench->sessions().add(std::make_unique<BridgeSession>(upstairs.settings(), network));
    QCOMPARE(second->count(), 21);
    for (const QString& title : {u"Living room (Downstairs) On"_qs, u"Kitchen On"_qs,
                                 u"Living room (Upstairs) On"_qs, u"Bathroom On"_qs})
        QVERIFY2(second->findText(title) >= 0, qPrintable(title));
    // Shown as the first bridge's room, and stored as it was until the user picks again.
    QCOMPARE(second->currentText(), u"Living room (Downstairs) Off"_qs);
    QCOMPARE(m_bench->store().readString(u"hotkeyCustomGroupAction1"_qs), std::optional<QString>("1_off"));

    const int upper = second->findText(u"Living room (Upstairs) On"_qs);
    second->setCurrentIndex(upper);
    Q_EMIT second->activated(upper);
    QCOMPARE(m_bench->store().readString(u"hotkeyCustomGroupAction1"_qs),
             std::optional<QString>("001788FFFE9C4D5E/1_on"));

    // That bridge's rooms change, then the bridge goes.
    upstairs.settings().home().setGroups({{.group_id = u"1"_qs, .name = u"Attic"_qs}});
    QVERIFY(second->findText(u"Attic On"_qs) >= 0);
    QCOMPARE(second->findText(u"Living room (Downstairs) On"_qs), -1);
    m_bench->sessions().remove(&session);
    QCOMPARE(second->count(), 12);
    QCOMPARE(second->currentText(), u"001788FFFE9C4D5E/1_on (room not found)"_qs);
}

void TestHotkeyView::aPickerGroupsTheActionsUnderEachRoomAndTheFilterNarrowsThem()
{
    m_bench->setBridge(u"127.0.0.1:9"_qs, u"key"_qs);
    m_bench->settings().home().setGroups(
        {{.group_id = u"1"_qs,
          .name = u"Bedroom"_qs,
          .lights = {u"1"_qs, u"2"_qs, u"3"_qs},
          .type = u"Room"_qs},
         {.group_id = u"2"_qs, .name = u"Bedroom"_qs, .lights = {u"4"_qs}, .type = u"Room"_qs},
         {.group_id = u"3"_qs, .name = u"Hall"_qs, .lights = {u"5"_qs}, .type = u"Zone"_qs}});
    build();
    GroupActionPicker* first = picker(1);
    const auto rows = [first] {
        QStringList shown;
        auto* list = qobject_cast<QListView*>(first->view());
        for (int row = 0; row < first->count(); ++row) {
            if (!list->isRowHidden(row))
                shown << first->itemText(row);
        }
        return shown;
    };
    // Rooms of one name told apart by their lamps, a zone by its kind; each heading is no choice.
    const QStringList all = rows();
    QCOMPARE(all.mid(0, 3),
             (QStringList{u"(No action)"_qs, u"Bedroom \u2014 room, 3 lamps"_qs, u"Bedroom On"_qs}));
    QVERIFY(all.contains(u"Bedroom \u2014 room, 1 lamp"_qs));
    QVERIFY(all.contains(u"Hall \u2014 zone"_qs));
    QCOMPARE(all.size(), 1 + 3 * 5);
    QCOMPARE(first->model()->flags(first->model()->index(1, 0)) & Qt::ItemIsEnabled, Qt::ItemFlags());

    // The filter narrows every picker to the rooms it names, whatever the case.
    auto* filter = m_view->findChild<QLineEdit*>(u"roomActionFilter"_qs);
    QVERIFY(filter);
    QCOMPARE(filter->accessibleName(), u"Filter rooms"_qs);
    QTest::keyClicks(filter, u"HALL"_qs);
    QCOMPARE(rows(),
             (QStringList{u"(No action)"_qs, u"Hall \u2014 zone"_qs, u"Hall (zone) On"_qs,
                          u"Hall (zone) Off"_qs, u"Hall (zone) Brighter"_qs, u"Hall (zone) Darker"_qs}));
    filter->clear();
    QCOMPARE(rows(), all);
}

void TestHotkeyView::stepSizeIsStoredAtOnce_data()
{
    QTest::addColumn<int>("choice");
    QTest::addColumn<qint64>("stored");
    QTest::newRow("Small") << 0 << qint64(10);
    QTest::newRow("Medium") << 1 << qint64(25);
    QTest::newRow("Large") << 2 << qint64(50);
}

void TestHotkeyView::stepSizeIsStoredAtOnce()
{
    QFETCH(int, choice);
    QFETCH(qint64, stored);
    m_bench->settings().preferences().setKeyIncrement(33); // set by hand: none of the three is shown chosen
    build();
    auto* step = m_view->findChild<SegmentedControl*>(QStringLiteral("stepSize"));
    QCOMPARE(step->selectedIndex(), -1);

    QTest::mouseClick(step->button(choice), Qt::LeftButton);
    QCOMPARE(m_bench->store().readInt(SettingsKeys::keyIncrement), stored);
    QCOMPARE(m_bench->settings().preferences().keyIncrement(), stored);
    QCOMPARE(step->selectedIndex(), choice);
}

void TestHotkeyView::saysSoWhereTheDesktopHasNoGlobalShortcuts()
{
    build();
    auto* notice = m_view->findChild<QLabel*>(QStringLiteral("shortcutsUnavailable"));
    QVERIFY(!notice->isVisible());

    m_bench->fake().available = false;
    Q_EMIT m_bench->fake().unavailable(QStringLiteral("no portal here"));
    QVERIFY(notice->isVisible());
    QVERIFY(notice->text().contains(QStringLiteral("not available on this desktop")));
    QVERIFY(notice->text().contains(QStringLiteral("no portal here")));
    for (const RecorderField* recorder : m_view->findChildren<RecorderField*>())
        QVERIFY(!recorder->isVisible());
}

QTEST_MAIN(TestHotkeyView)
#include "tst_hotkeyview.moc"
