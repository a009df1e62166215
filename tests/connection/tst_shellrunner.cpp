#include "TestSupport.h"
#include "connection/ShellRunner.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

class TestShellRunner final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resolvesACommandThroughTheLoginShell_data();
    void resolvesACommandThroughTheLoginShell();
    void handsOverStandardOutput();
    void warnsAndAnswersNothingForAMissingScript();
    void runsShippedScriptsFromTheDataFolder();

private:
    /// Waits for the one answer of an asynchronous call.
    template <typename T>
    static std::optional<T> answerOf(const std::function<void(std::function<void(T)>)>& call)
    {
        auto answers = std::make_shared<QList<T>>();
        call([answers](T answer) { answers->append(std::move(answer)); });
        if (!QTest::qWaitFor([&] { return !answers->isEmpty(); }, 30000))
            return std::nullopt;
        return answers->first();
    }

    ShellRunner m_runner;
};

void TestShellRunner::resolvesACommandThroughTheLoginShell_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("found");
    QTest::newRow("sh") << "sh" << true;
    QTest::newRow("unknown command") << "no-such-command-glowdeck" << false;
}

void TestShellRunner::resolvesACommandThroughTheLoginShell()
{
    QFETCH(QString, name);
    QFETCH(bool, found);
    const auto path =
        answerOf<CommandExecuting::PathResult>([&](auto done) { m_runner.resolveCommandPath(name, done); });
    QVERIFY(path.has_value());
    QCOMPARE(std::holds_alternative<QString>(*path), found);
    if (found)
        QVERIFY2(std::get<QString>(*path).endsWith(u'/' + name), qPrintable(std::get<QString>(*path)));
    else
        QCOMPARE(std::get<BashError>(*path), (BashError{BashError::Kind::commandNotFound, name}));
}

void TestShellRunner::handsOverStandardOutput()
{
    const auto output = answerOf<QString>([this](auto done) {
        m_runner.runCommand(QStringLiteral("/bin/echo"), {QStringLiteral("a b")}, done);
    });
    QCOMPARE(output, std::optional<QString>(QStringLiteral("a b\n")));
}

void TestShellRunner::warnsAndAnswersNothingForAMissingScript()
{
    QTemporaryDir scripts;
    ShellRunner runner(scripts.path());
    PrintedLines printed;
    const auto output = answerOf<std::optional<QString>>(
        [&](auto done) { runner.runScript(QStringLiteral("missing"), {}, done); });
    QVERIFY(output.has_value());
    QCOMPARE(*output, std::optional<QString>());
    const QString rule = QStringLiteral("---------------------------------------");
    QCOMPARE(printed.lines(), (QStringList{rule, "-----DEPRECATED USE OF RUN_SCRIPT: missing", rule}));
}

void TestShellRunner::runsShippedScriptsFromTheDataFolder()
{
    if (QStandardPaths::findExecutable(QStringLiteral("ruby")).isEmpty())
        QSKIP("ruby is not installed (scripts/install-deps.sh installs it)");
    QTemporaryDir data;
    QVERIFY(QDir(data.path()).mkdir(QStringLiteral("scripts")));
    QFile script(data.filePath(QStringLiteral("scripts/hello.rb")));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("puts \"hello #{ARGV.join(' ')}\"\n");
    script.close();
    qputenv("GLOWDECK_DATA_DIR", data.path().toUtf8());

    const auto output = answerOf<std::optional<QString>>(
        [this](auto done) { m_runner.runScript(QStringLiteral("hello"), {QStringLiteral("there")}, done); });
    qunsetenv("GLOWDECK_DATA_DIR");

    QCOMPARE(output, std::optional<std::optional<QString>>(QStringLiteral("hello there\n")));
}

QTEST_GUILESS_MAIN(TestShellRunner)
#include "tst_shellrunner.moc"
