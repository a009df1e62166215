#include "PaneBench.h"
#include "connection/ShellRunner.h"
#include "preferences/panes/DebugReport.h"
#include "state/SettingsKeys.h"

#include <QFile>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString key = QStringLiteral("Zq8wFh3kLr0pXa9sTu1vBn2mCd4eGi5jKo6lPy7");
const QString otherKey = QStringLiteral("oldkey0123456789abcdef");
const QString upstairsKey = QStringLiteral("Upstairs0123456789abcdefKEY");

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestDebugReport final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void writesAndPostsAReportWithoutTheKey();
    void postsNothingWhenReportsAreOff_data();
    void postsNothingWhenReportsAreOff();
    void withoutRubyItOnlySaysSo();

private:
    QList<LoopbackServer::Request> posted() const
    {
        QList<LoopbackServer::Request> crash;
        for (const LoopbackServer::Request& request : m_collector->requests()) {
            if (request.requestLine.startsWith("POST /crash/ "))
                crash << request;
        }
        return crash;
    }
    /// Runs the action with the real shell runner and the shipped script; false when it did not finish.
    bool send(DebugReport& report)
    {
        QSignalSpy finished(&report, &DebugReport::finished);
        report.send();
        return finished.wait(30000) && finished.first().first().toBool();
    }

    QTemporaryDir m_cache;
    std::unique_ptr<PaneBench> m_bench;
    ShellRunner m_shell;
    std::unique_ptr<LoopbackServer> m_collector;
};

void TestDebugReport::initTestCase()
{
    // Before anything reads it; the script, a child of this process, finds its input there too.
    qputenv("XDG_CACHE_HOME", m_cache.path().toUtf8());
}

void TestDebugReport::init()
{
    if (QStandardPaths::findExecutable(QStringLiteral("ruby")).isEmpty())
        QSKIP("ruby is not installed (scripts/install-deps.sh installs it)");
    QFile::remove(DebugReport::reportPath());
    m_collector = std::make_unique<LoopbackServer>();
    QVERIFY(m_collector->listen());
    m_bench = std::make_unique<PaneBench>();
    QVERIFY(m_bench->start());
    // Stored as Glowdeck stores them: every bridge in "bridges", the first one in the older keys as well.
    m_bench->settings().preferences().setBridges(
        {BridgeContact{.id = u"001788FFFE6A3B2C"_qs, .address = m_bench->bridge().hostAndPort(), .key = key},
         BridgeContact{.id = u"001788FFFE9C4D5E"_qs, .address = u"192.0.2.9"_qs, .key = upstairsKey}});
    m_bench->settings().setHueIP(m_bench->bridge().hostAndPort());
    m_bench->settings().setHueKey(key);
    m_bench->settings().activity().addLogLine(QStringLiteral("Connecting to Bridge... [%1]").arg(key));
    m_bench->settings().activity().addLogLine(QStringLiteral("GET /api/%1/lights failed").arg(otherKey));
}

void TestDebugReport::cleanup()
{
    m_bench.reset();
}

void TestDebugReport::writesAndPostsAReportWithoutTheKey()
{
    const QUrl endpoint = m_collector->url(QStringLiteral("/crash/"));
    DebugReport report(m_bench->settings(), m_shell, m_bench->state().fileName(), endpoint);
    report.setNetwork(&m_bench->network());

    QVERIFY(send(report));

    const QByteArray text = readFile(DebugReport::reportPath());
    QVERIFY2(text.startsWith("Glowdeck debug report\n"), text.constData());
    for (const QByteArray& part :
         {QByteArray("Qt: " QT_VERSION_STR), QByteArray("\"bridgeUser\": \"[redacted]\""),
          QByteArray("Connecting to Bridge... [[redacted]]"), QByteArray("GET /api/[redacted]/lights failed"),
          QByteArray(": answers as bridge 001788FFFE6A3B2C (\"Philips hue\"), over plain HTTP")})
        QVERIFY2(text.contains(part), part.constData());
    QVERIFY(!text.contains(key.toUtf8()));
    QVERIFY(!text.contains(otherKey.toUtf8()));
    QVERIFY2(!text.contains(upstairsKey.toUtf8()), text.constData());
    QCOMPARE(QFile::permissions(DebugReport::reportPath()) & 0x0077, QFileDevice::Permissions());
    QVERIFY(!QFile::exists(DebugReport::inputPath())); // it held the key

    QCOMPARE(posted().size(), 1);
    const QByteArray body = posted().first().body;
    QVERIFY(body.contains("Debug report"));
    QVERIFY(!body.contains(key.toUtf8()));
    QVERIFY(m_bench->settings().activity().log().contains(QStringLiteral("Debug report written to ") +
                                                          DebugReport::reportPath()));
}

void TestDebugReport::postsNothingWhenReportsAreOff_data()
{
    QTest::addColumn<bool>("endpoint");
    QTest::newRow("no endpoint") << false;
    QTest::newRow("reports switched off") << true;
}

void TestDebugReport::postsNothingWhenReportsAreOff()
{
    QFETCH(bool, endpoint);
    if (endpoint)
        m_bench->store().writeBool(QStringLiteral("sendErrorReports"), false);
    DebugReport report(m_bench->settings(), m_shell, m_bench->state().fileName(),
                       endpoint ? m_collector->url(QStringLiteral("/crash/")) : QUrl());

    QVERIFY(send(report));

    QVERIFY(posted().isEmpty());
    QVERIFY(m_bench->settings().activity().log().contains(
        QStringLiteral("Debug report not sent: no error-collection endpoint is configured")));
}

void TestDebugReport::withoutRubyItOnlySaysSo()
{
    QTemporaryDir emptyPath;
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", emptyPath.path().toUtf8());
    QSignalSpy finished(&m_bench->debugReport(), &DebugReport::finished);

    m_bench->debugReport().send();
    qputenv("PATH", path);

    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().first().toBool(), false);
    QVERIFY(m_bench->commands.scriptsRun.isEmpty());
    QVERIFY(m_bench->settings().activity().log().last().contains(QStringLiteral("needs Ruby")));
    QVERIFY(!QFile::exists(DebugReport::inputPath()));
}

QTEST_GUILESS_MAIN(TestDebugReport)
#include "tst_debugreport.moc"
