#include "app/SingleInstance.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// The real program, started again and again on one private runtime folder: who hands over to whom.
class TestSingleInstance final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aSecondStartWithTheSameFileHandsOver();
    void aLinkedConfigurationFolderMeetsItsTarget_data();
    void aLinkedConfigurationFolderMeetsItsTarget();
    void anotherSettingsFileIsAnInstanceOfItsOwn();
    void aSocketLeftByAKilledRunDoesNotBlockTheNext();

private:
    /// Starts the program on `settingsFile` and leaves it running; false when it did not come up as the
    /// instance.
    bool startInstance(const QString& settingsFile);
    /// Starts the program on `settingsFile` and waits for it to end; its output and exit code.
    std::pair<QString, int> startAgain(const QString& settingsFile);
    QString file(const QString& name) const { return m_dir->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_dir;
    QProcessEnvironment m_environment;
    std::vector<std::unique_ptr<QProcess>> m_running;
};

void TestSingleInstance::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_environment = QProcessEnvironment::systemEnvironment();
    // Sockets, crash reports and the rest of a run's files stay in the test's folder.
    for (const char* name : {"XDG_RUNTIME_DIR", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        m_environment.insert(QString::fromLatin1(name), m_dir->path());
    // No session bus: the program would take its name on the user's bus beside a Glowdeck running there.
    m_environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                         QStringLiteral("unix:path=") + m_dir->filePath(QStringLiteral("no-bus")));
    qputenv("XDG_RUNTIME_DIR", m_dir->path().toUtf8()); // where socketName() looks, as the program does
}

void TestSingleInstance::cleanup()
{
    for (const auto& process : m_running) {
        process->kill();
        process->waitForFinished();
    }
    m_running.clear();
    m_dir.reset();
}

bool TestSingleInstance::startInstance(const QString& settingsFile)
{
    auto& process = m_running.emplace_back(std::make_unique<QProcess>());
    process->setProcessEnvironment(m_environment);
    process->start(QStringLiteral(GLOWDECK_PROGRAM), {QStringLiteral("--settings"), settingsFile});
    // Up once its socket takes connections (a file left behind by a killed run does not).
    const QString socket = SingleInstance::socketName(settingsFile);
    return QTest::qWaitFor(
        [&] {
            QLocalSocket probe;
            probe.connectToServer(socket);
            return probe.waitForConnected(100);
        },
        10000);
}

std::pair<QString, int> TestSingleInstance::startAgain(const QString& settingsFile)
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(QStringLiteral(GLOWDECK_PROGRAM), {QStringLiteral("--settings"), settingsFile});
    if (!process.waitForFinished(10000))
        return {QStringLiteral("<still running>"), -1};
    return {QString::fromUtf8(process.readAllStandardOutput()).trimmed(), process.exitCode()};
}

void TestSingleInstance::aSecondStartWithTheSameFileHandsOver()
{
    QVERIFY(startInstance(file(QStringLiteral("settings.json"))));
    QVERIFY(QFile::link(file(QStringLiteral("settings.json")), file(QStringLiteral("link.json"))));

    for (const QString& sameFile : {file(QStringLiteral("settings.json")), file(QStringLiteral("link.json")),
                                    m_dir->path() + QStringLiteral("/./settings.json")}) {
        const auto [output, exitCode] = startAgain(sameFile);
        QCOMPARE(exitCode, 0);
        QCOMPARE(output,
                 QStringLiteral("glowdeck: already running with %1; its window was opened.").arg(sameFile));
    }
    QCOMPARE(m_running.front()->state(), QProcess::Running);
}

void TestSingleInstance::aLinkedConfigurationFolderMeetsItsTarget_data()
{
    QTest::addColumn<QString>("made"); // what exists in the linked folder before the start
    QTest::newRow("nothing yet") << QString();
    QTest::newRow("the glowdeck folder, no file yet") << "glowdeck";
    QTest::newRow("the file") << "glowdeck/settings.json";
}

void TestSingleInstance::aLinkedConfigurationFolderMeetsItsTarget()
{
    // "~/.config" kept by a dotfile manager: a link to a folder elsewhere.
    QFETCH(QString, made);
    QVERIFY(QDir().mkpath(file(QStringLiteral("dotfiles/config"))));
    QVERIFY(QFile::link(file(QStringLiteral("dotfiles/config")), file(QStringLiteral("config"))));
    if (made.endsWith(u".json"))
        QVERIFY(QDir().mkpath(file(QStringLiteral("dotfiles/config/glowdeck"))) &&
                QFile(file(QStringLiteral("dotfiles/config/") + made)).open(QIODevice::WriteOnly));
    else if (!made.isEmpty())
        QVERIFY(QDir().mkpath(file(QStringLiteral("dotfiles/config/") + made)));
    QCOMPARE(SingleInstance::socketName(file(QStringLiteral("config/glowdeck/settings.json"))),
             SingleInstance::socketName(file(QStringLiteral("dotfiles/config/glowdeck/settings.json"))));
    QVERIFY(SingleInstance::socketName(file(QStringLiteral("config/glowdeck/settings.json"))) !=
            SingleInstance::socketName(file(QStringLiteral("config/glowdeck/other.json"))));
}

void TestSingleInstance::anotherSettingsFileIsAnInstanceOfItsOwn()
{
    QVERIFY(startInstance(file(QStringLiteral("home.json"))));
    QVERIFY(startInstance(file(QStringLiteral("office.json"))));
    QCOMPARE(m_running.front()->state(), QProcess::Running);
    QCOMPARE(m_running.back()->state(), QProcess::Running);
}

void TestSingleInstance::aSocketLeftByAKilledRunDoesNotBlockTheNext()
{
    QVERIFY(startInstance(file(QStringLiteral("settings.json"))));
    m_running.front()->kill(); // SIGKILL: the socket stays behind
    m_running.front()->waitForFinished();
    QVERIFY(QFileInfo::exists(SingleInstance::socketName(file(QStringLiteral("settings.json")))));

    QVERIFY(startInstance(file(QStringLiteral("settings.json"))));
    QCOMPARE(m_running.back()->state(), QProcess::Running);
    // The new run is the one a later start finds.
    QCOMPARE(startAgain(file(QStringLiteral("settings.json"))).second, 0);
}

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "tst_singleinstance.moc"
