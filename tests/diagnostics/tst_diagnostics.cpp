#include "CountingNetwork.h"
#include "LoopbackServer.h"
#include "TestSupport.h"
#include "diagnostics/Diagnostics.h"
#include "state/SettingsKeys.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QProcess>
#include <QSignalSpy>
#include <QSysInfo>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

#include <memory>

class TestDiagnostics final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void announcesTheStartAsAnInformationItem();
    void sendsNothingWhenSwitchedOff_data();
    void sendsNothingWhenSwitchedOff();
    void keepsOnlyTheTenNewestReportsWhileSwitchedOff();
    void sendsAReportLeftByAnEarlierRunAsCriticalAndRemovesIt_data();
    void sendsAReportLeftByAnEarlierRunAsCriticalAndRemovesIt();
    void reportsAnUncaughtExceptionAtDebugLevel();
    void aDyingProcessLeavesAReport_data();
    void aDyingProcessLeavesAReport();
    void theKeyNeverLeavesTheMachine();

private:
    std::unique_ptr<Diagnostics> diagnostics(const QUrl& endpoint)
    {
        return std::make_unique<Diagnostics>(*m_network, m_settings->store(), endpoint, m_folder->path());
    }
    QString leaveReport(qint64 seconds, const QByteArray& text = "Fatal signal SIGSEGV (11)\n")
    {
        QFile file(m_folder->filePath(QStringLiteral("crash-%1-4242.txt").arg(seconds)));
        [&] { QVERIFY(file.open(QIODevice::WriteOnly)); }();
        file.write(text);
        return file.fileName();
    }
    QStringList reportFiles() const { return QDir(m_folder->path()).entryList({"crash-*.txt"}, QDir::Files); }
    /// The value at "key/key/..." below an item's "data".
    static QJsonValue data(const LoopbackServer::Request& item, const QString& path)
    {
        QJsonValue value = QJsonDocument::fromJson(item.body).object()["data"];
        for (const QString& key : path.split('/'))
            value = value.toObject().value(key);
        return value;
    }

    std::unique_ptr<TestSettings> m_settings;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<CountingNetwork> m_network;
    std::unique_ptr<LoopbackServer> m_collector;
};

void TestDiagnostics::init()
{
    m_settings = std::make_unique<TestSettings>();
    m_folder = std::make_unique<QTemporaryDir>();
    m_network = std::make_unique<CountingNetwork>();
    m_collector = std::make_unique<LoopbackServer>();
    QVERIFY(m_collector->listen());
    m_collector->setAnswer(R"({"err":0})");
}

void TestDiagnostics::announcesTheStartAsAnInformationItem()
{
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    auto reporting = diagnostics(m_collector->url(QStringLiteral("/crash/")));
    reporting->start();
    QTRY_COMPARE(m_collector->requests().size(), 1);

    const LoopbackServer::Request item = m_collector->requests().first();
    QCOMPARE(item.requestLine, "POST /crash/ HTTP/1.1");
    QCOMPARE(item.headers["content-type"], "application/json");
    QCOMPARE(item.headers["x-rollbar-access-token"], "3f9c1a7e5b2d4c6e8a0b1c2d3e4f5a6b");
    QCOMPARE(QJsonDocument::fromJson(item.body).object()["access_token"], "3f9c1a7e5b2d4c6e8a0b1c2d3e4f5a6b");
    QCOMPARE(data(item, "level"), "info");
    QCOMPARE(data(item, "body/message/body"), "Glowdeck booted");
    QCOMPARE(data(item, "environment"), "production");
    QCOMPARE(data(item, "platform"), QSysInfo::kernelType());
    QCOMPARE(data(item, "notifier/name"), "glowdeck");
    QVERIFY(!QUuid::fromString(data(item, "uuid").toString()).isNull());
    const qint64 timestamp = data(item, "timestamp").toInteger();
    QVERIFY(timestamp >= before && timestamp <= QDateTime::currentSecsSinceEpoch());
}

void TestDiagnostics::sendsNothingWhenSwitchedOff_data()
{
    QTest::addColumn<QUrl>("endpoint");
    QTest::addColumn<bool>("switchedOff");
    QTest::newRow("no endpoint") << QUrl() << false;
    QTest::newRow("not an address") << QUrl(QStringLiteral("crash")) << false;
    QTest::newRow("switched off by the user") << QUrl(QStringLiteral("http://127.0.0.1:1/crash/")) << true;
}

void TestDiagnostics::sendsNothingWhenSwitchedOff()
{
    QFETCH(QUrl, endpoint);
    QFETCH(bool, switchedOff);
    if (switchedOff)
        m_settings->store().writeBool(SettingsKeys::sendErrorReports, false);
    const QString report = leaveReport(1700000000);

    auto reporting = diagnostics(endpoint);
    reporting->start();
    reporting->reportUncaughtException(QStringLiteral("lamp on fire"));
    QVERIFY(!reporting->isEnabled());
    QCOMPARE(m_network->requests, 0);
    QVERIFY2(QFile::exists(report), "the user may switch reports on later");
}

void TestDiagnostics::keepsOnlyTheTenNewestReportsWhileSwitchedOff()
{
    // 999999999 to 1000000010: the oldest have the shortest names, which sort last by name.
    for (qint64 seconds = 999999999; seconds <= 1000000010; ++seconds)
        leaveReport(seconds);
    diagnostics(QUrl())->start();
    const QStringList kept = reportFiles();
    QCOMPARE(kept.size(), 10);
    QVERIFY(!kept.contains(QStringLiteral("crash-999999999-4242.txt")) &&
            !kept.contains(QStringLiteral("crash-1000000000-4242.txt")));
}

void TestDiagnostics::sendsAReportLeftByAnEarlierRunAsCriticalAndRemovesIt_data()
{
    QTest::addColumn<int>("status"); // 0: nobody listening
    QTest::newRow("accepted") << 200;
    QTest::newRow("collector failing") << 500;
    QTest::newRow("collector unreachable: the report is kept") << 0;
}

void TestDiagnostics::sendsAReportLeftByAnEarlierRunAsCriticalAndRemovesIt()
{
    QFETCH(int, status);
    m_collector->setStatus(status);
    const QByteArray text = "Glowdeck 0.1.0\nFatal signal SIGBUS (7)\n\nLast printed lines:\nConnected\n";
    const QString report = leaveReport(1700000000, text);

    auto reporting = diagnostics(status ? m_collector->url(QStringLiteral("/crash/"))
                                        : QUrl(QStringLiteral("http://127.0.0.1:1/crash/")));
    QSignalSpy sent(reporting.get(), &Diagnostics::itemSent);
    reporting->start();
    QTRY_COMPARE(sent.size(), 2);
    if (!status) {
        QVERIFY(QFile::exists(report));
        return;
    }
    QCOMPARE(m_collector->requests().size(), 2);
    QCOMPARE(data(m_collector->requests()[0], "level"), "critical");
    QCOMPARE(data(m_collector->requests()[0], "body/crash_report/raw"), QString::fromUtf8(text));
    QCOMPARE(data(m_collector->requests()[1], "body/message/body"), "Glowdeck booted");
    QTRY_VERIFY(!QFile::exists(report));
}

void TestDiagnostics::reportsAnUncaughtExceptionAtDebugLevel()
{
    PrintedLines printed;
    auto reporting = diagnostics(m_collector->url(QStringLiteral("/crash/")));
    reporting->start(); // keeps the printed lines for crash reports, and must pass them on
    QTRY_COMPARE(m_collector->requests().size(), 1);
    reporting->reportUncaughtException(QStringLiteral("lamp on fire"));
    QCOMPARE(printed.lines(), QStringList{QStringLiteral("[ATTENTION] Uncaught exception lamp on fire")});
    QTRY_COMPARE(m_collector->requests().size(), 2);
    const LoopbackServer::Request item = m_collector->requests()[1];
    QCOMPARE(data(item, "level"), "debug");
    QCOMPARE(data(item, "body/trace/exception/class"), "UncaughtException");
    QCOMPARE(data(item, "body/trace/exception/message"), "lamp on fire");
    QVERIFY(data(item, "body/trace/frames").isArray());
}

void TestDiagnostics::aDyingProcessLeavesAReport_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("cause");
    QTest::newRow("uncaught exception") << "terminate"
                                        << "Uncaught exception lamp on fire";
    QTest::newRow("segmentation fault") << "segfault"
                                        << "Fatal signal SIGSEGV (11)";
}

void TestDiagnostics::aDyingProcessLeavesAReport()
{
    QFETCH(QString, how);
    QFETCH(QString, cause);
    QProcess crasher;
    QSignalSpy finished(&crasher, &QProcess::finished);
    crasher.start(QStringLiteral(DIAGNOSTICS_CRASHER), {how, m_folder->path()});
    QVERIFY(crasher.waitForStarted());
    const qint64 pid = crasher.processId();
    QVERIFY(finished.wait(30000));
    QCOMPARE(crasher.exitStatus(), QProcess::CrashExit);

    const QStringList reports = reportFiles();
    QCOMPARE(reports.size(), 1);
    QVERIFY(reports.first().endsWith(QStringLiteral("-%1.txt").arg(pid)));
    QFile file(m_folder->filePath(reports.first()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString report = QString::fromUtf8(file.readAll());
    QVERIFY2(report.contains(cause), qPrintable(report));
    // The last fifty printed lines, oldest first.
    const qsizetype oldest = report.indexOf(QStringLiteral("Switching light 30 on\n"));
    QVERIFY(oldest >= 0 && oldest < report.indexOf(QStringLiteral("Switching light 60 on\n")));
    QVERIFY(!report.contains(QStringLiteral("Switching light 10 on\n")));
    if (how == "terminate")
        QVERIFY(crasher.readAllStandardOutput().contains("[ATTENTION] Uncaught exception lamp on fire\n"));
}

void TestDiagnostics::theKeyNeverLeavesTheMachine()
{
    // A 40-character key, as bridges hand out, stored as the paired bridge's.
    const QString key = QStringLiteral("7dK2mQ9xLp4vR8sT1wY6zB3nC5fH0jA2gE4iU6oP");
    m_settings->store().writeString(QStringLiteral("bridgeUser"), key);
    // A report left by an older version, with the key as it was printed then.
    leaveReport(1600000000, ("Connecting to Bridge... [" + key + "]\n").toUtf8());
    // A process that dies after printing the key, and throws an exception naming it.
    QProcess crasher;
    QSignalSpy finished(&crasher, &QProcess::finished);
    crasher.start(QStringLiteral(DIAGNOSTICS_CRASHER), {QStringLiteral("terminate"), m_folder->path(), key});
    QVERIFY(finished.wait(30000));
    QCOMPARE(reportFiles().size(), 2);
    for (const QString& name : reportFiles()) {
        QFile file(m_folder->filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        // What the dying process kept is clean already; the old report is cleaned when it is sent.
        QVERIFY2(name.startsWith(QStringLiteral("crash-1600000000")) || !text.contains(key.toUtf8()),
                 text.constData());
    }

    auto reporting = diagnostics(m_collector->url(QStringLiteral("/crash/")));
    reporting->start();
    reporting->reportUncaughtException(QStringLiteral("bad answer from /api/%1/groups").arg(key));
    QTRY_COMPARE(m_collector->requests().size(), 4); // two reports, the start-up notice, the exception
    QByteArray sent;
    for (const LoopbackServer::Request& item : m_collector->requests())
        sent += item.body;
    QVERIFY2(!sent.contains(key.toUtf8()), sent.constData());
    QVERIFY(sent.contains("Using key [redacted]"));
    QVERIFY(sent.contains("PUT http://127.0.0.1:9/api/[redacted]/lights/1/state"));
    QVERIFY(sent.contains("Uncaught exception lamp on fire at /api/[redacted]/lights"));
    QVERIFY(sent.contains("Connecting to Bridge... [[redacted]]"));
    QVERIFY(sent.contains("bad answer from /api/[redacted]/groups"));
}

QTEST_GUILESS_MAIN(TestDiagnostics)
#include "tst_diagnostics.moc"
