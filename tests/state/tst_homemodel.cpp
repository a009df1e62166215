#include "TestSupport.h"
#include "state/HomeModel.h"
#include "state/MemorySettingsStore.h"

#include <QSignalSpy>
#include <QTest>

class TestHomeModel final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsEachBridgesHomeByTheIdItProved();
};

void TestHomeModel::findsEachBridgesHomeByTheIdItProved()
{
    HomeModel model;
    QSignalSpy added(&model, &HomeModel::bridgeAdded);
    QSignalSpy removed(&model, &HomeModel::bridgeRemoved);
    ActivityLog log;
    MemorySettingsStore file;
    BridgeHome& upstairs = model.add();
    BridgeHome& downstairs = model.add(u"001788FFFE000002"_qs);
    QCOMPARE(added.size(), 2);
    QCOMPARE(model.homes(), (QList<BridgeHome*>{&upstairs, &downstairs}));
    QVERIFY(!model.find(QString())); // a bridge not proved yet is found by no id

    // A home takes the id its bridge proves, as the bridge's state learns it.
    Preferences preferences(file);
    BridgeLink state(preferences, log, upstairs);
    state.setBridgeContact(u"https"_qs, u"001788FFFE000001"_qs, {});
    QCOMPARE(model.find(u"001788fffe000001"_qs), &upstairs);
    QCOMPARE(model.find(u"001788FFFE000002"_qs), &downstairs);

    model.remove(&downstairs);
    QCOMPARE(removed.size(), 1);
    QVERIFY(!model.find(u"001788FFFE000002"_qs));
    QCOMPARE(model.homes(), QList<BridgeHome*>{&upstairs});
}

QTEST_GUILESS_MAIN(TestHomeModel)
#include "tst_homemodel.moc"
