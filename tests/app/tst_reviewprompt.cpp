#include "TestSupport.h"
#include "app/ReviewPrompt.h"
#include "state/SettingsKeys.h"

#include <QTest>

class TestReviewPrompt final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decidesOnEachOpening_data();
    void decidesOnEachOpening();
};

void TestReviewPrompt::decidesOnEachOpening_data()
{
    QTest::addColumn<qint64>("count"); // -1: never stored
    QTest::addColumn<bool>("shown");
    QTest::addColumn<bool>("noMore");
    QTest::addColumn<qint64>("expectedCount");
    QTest::addColumn<bool>("expectedShown");

    // The banner shows from the 27th to the 41st opening.
    QTest::newRow("first opening") << qint64(-1) << false << false << qint64(1) << false;
    QTest::newRow("25 stays hidden") << qint64(25) << false << false << qint64(26) << false;
    QTest::newRow("26 shows") << qint64(26) << false << false << qint64(27) << true;
    QTest::newRow("39 shows") << qint64(39) << false << false << qint64(40) << true;
    QTest::newRow("40 does not show") << qint64(40) << false << false << qint64(41) << false;
    QTest::newRow("40 does not hide") << qint64(40) << true << false << qint64(41) << true;
    QTest::newRow("41 hides") << qint64(41) << true << false << qint64(42) << false;
    QTest::newRow("shown below 41 stays") << qint64(30) << true << false << qint64(31) << true;
    QTest::newRow("no more requests: hidden stays hidden")
        << qint64(30) << false << true << qint64(31) << false;
    QTest::newRow("no more requests: shown stays shown") << qint64(45) << true << true << qint64(46) << true;
}

void TestReviewPrompt::decidesOnEachOpening()
{
    QFETCH(qint64, count);
    QFETCH(bool, shown);
    QFETCH(bool, noMore);
    QFETCH(qint64, expectedCount);
    QFETCH(bool, expectedShown);

    TestSettings state;
    if (count >= 0)
        state.store().writeInt(SettingsKeys::appInvocations, count);
    if (noMore)
        state.store().writeBool(SettingsKeys::noMoreReviewRequests, true);
    state.settings().preferences().setShowReviewRequest(shown);

    ReviewPrompt(state.settings().preferences()).onWindowOpened();

    QCOMPARE(state.store().readInt(SettingsKeys::appInvocations), expectedCount);
    QCOMPARE(state.settings().preferences().showReviewRequest(), expectedShown);
}

QTEST_GUILESS_MAIN(TestReviewPrompt)
#include "tst_reviewprompt.moc"
