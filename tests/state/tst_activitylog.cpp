#include "TestSupport.h"
#include "state/MemorySettingsStore.h"

#include <QTest>

class TestActivityLog final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dropsTheWholeLogAtItsCapAndKeepsEveryKeyOut();
};

void TestActivityLog::dropsTheWholeLogAtItsCapAndKeepsEveryKeyOut()
{
    ActivityLog log;
    PrintedLines printed;
    for (int i = 0; i < ActivityLog::capacity; ++i)
        log.addLogLine(QString::number(i));
    QCOMPARE(log.log().size(), 1001);
    log.addLogLine(QStringLiteral("next"));
    QCOMPARE(log.log(), QStringList{QStringLiteral("next")});
    QCOMPARE(printed.lines().size(), 1002);

    // Each bridge's key, as long as its state lives, whether in a request path or not.
    MemorySettingsStore file;
    Preferences preferences(file);
    BridgeHome upstairsHome;
    BridgeHome downstairsHome;
    auto upstairs = std::make_unique<BridgeLink>(preferences, log, upstairsHome);
    BridgeLink downstairs(preferences, log, downstairsHome);
    upstairs->setHueKey(QStringLiteral("secret-key"));
    downstairs.setHueKey(QStringLiteral("other key"));
    log.addLogLine(QStringLiteral("GET /api/secret-key/lights; the key \"other key\""));
    QCOMPARE(log.log().last(), QStringLiteral("GET /api/[redacted]/lights; the key \"[redacted]\""));
    QCOMPARE(printed.lines().last(), log.log().last());
    upstairs.reset();
    log.addLogLine(QStringLiteral("secret-key and other key"));
    QCOMPARE(log.log().last(), QStringLiteral("secret-key and [redacted]"));
}

QTEST_GUILESS_MAIN(TestActivityLog)
#include "tst_activitylog.moc"
