#include "TestSupport.h"
#include "bridge/BridgeNetwork.h"
#include "session/BridgeSession.h"
#include "session/BridgeSessions.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

class TestBridgeSessions final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsEachSessionByItsBridgeIdUntilItIsRemoved();
};

void TestBridgeSessions::findsEachSessionByItsBridgeIdUntilItIsRemoved()
{
    BridgeNetwork network;
    TestSettings upstairs;
    TestSettings downstairs;
    upstairs.settings().setBridgeContact(u"https"_qs, u"001788FFFE000001"_qs, {});
    downstairs.settings().setBridgeContact(u"https"_qs, u"001788FFFE000002"_qs, {});
    BridgeSessions sessions;
    QSignalSpy added(&sessions, &BridgeSessions::added);
    QSignalSpy removed(&sessions, &BridgeSessions::removed);
    QVERIFY(sessions.isEmpty() && !sessions.first());

    BridgeSession& first = sessions.add(std::make_unique<BridgeSession>(upstairs.settings(), network));
    BridgeSession& second = sessions.add(std::make_unique<BridgeSession>(downstairs.settings(), network));
    QCOMPARE(added.size(), 2);
    QCOMPARE(sessions.all(), (QList<BridgeSession*>{&first, &second}));
    QCOMPARE(sessions.find(u"001788fffe000002"_qs), &second); // ids are compared without regard to case
    QCOMPARE(sessions.find(u"001788FFFE000001"_qs), &first);
    QVERIFY(!sessions.find(u"001788FFFE000003"_qs) && !sessions.find(QString()));

    sessions.remove(&first);
    QCOMPARE(removed.size(), 1);
    QVERIFY(!sessions.find(u"001788FFFE000001"_qs));
    QCOMPARE(sessions.first(), &second);
    sessions.remove(&first); // gone already: nothing happens
    QCOMPARE(removed.size(), 1);
    QCOMPARE(sessions.size(), 1);
}

QTEST_GUILESS_MAIN(TestBridgeSessions)
#include "tst_bridgesessions.moc"
