#include "login/xdg/XdgAutostartEntry.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString id = QStringLiteral("com.brambleworks.Glowdeck");

QString readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool writeFile(const QString& path, const QString& text)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) == text.toUtf8().size();
}

} // namespace

class TestXdgAutostartEntry final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void enabledIsReadFromTheEntryEveryTime_data();
    void enabledIsReadFromTheEntryEveryTime();
    void anInstalledProgramCopiesItsPackagedEntry_data();
    void anInstalledProgramCopiesItsPackagedEntry();
    void switchingOffMasksASystemEntry();
    void execValueQuotesWhatTheShellWouldSplit_data();
    void execValueQuotesWhatTheShellWouldSplit();

private:
    XdgAutostartEntry entry(const QString& executable = QStringLiteral("/opt/glowdeck/bin/glowdeck"),
                            const QStringList& systemDirs = {}, const QStringList& arguments = {}) const
    {
        return XdgAutostartEntry(id, m_folder->filePath(QStringLiteral("config")), systemDirs, executable,
                                 arguments);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestXdgAutostartEntry::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestXdgAutostartEntry::enabledIsReadFromTheEntryEveryTime_data()
{
    QTest::addColumn<QString>("entry"); // empty: no file
    QTest::addColumn<bool>("enabled");

    const QString head = QStringLiteral("[Desktop Entry]\nType=Application\nName=Glowdeck\nExec=glowdeck\n");
    QTest::newRow("no entry") << QString() << false;
    QTest::newRow("plain entry") << head << true;
    QTest::newRow("hidden") << head + "Hidden=true\n" << false;
    QTest::newRow("hidden, blanks around =") << head + "Hidden = true\n" << false;
    QTest::newRow("Hidden=false") << head + "Hidden=false\n" << true;
    QTest::newRow("switched off by GNOME") << head + "X-GNOME-Autostart-enabled=false\n" << false;
    QTest::newRow("Hidden in another group") << head + "[Desktop Action quit]\nHidden=true\n" << true;
}

void TestXdgAutostartEntry::enabledIsReadFromTheEntryEveryTime()
{
    QFETCH(QString, entry);
    QFETCH(bool, enabled);
    XdgAutostartEntry item = this->entry();
    QVERIFY(!item.isEnabled());
    if (!entry.isEmpty())
        QVERIFY(writeFile(item.entryPath(), entry));
    QCOMPARE(item.isEnabled(), enabled);
}

void TestXdgAutostartEntry::anInstalledProgramCopiesItsPackagedEntry_data()
{
    QTest::addColumn<QString>("packagedExec");
    QTest::addColumn<QStringList>("own");   // what the running program was started with
    QTest::addColumn<QString>("arguments"); // after the running program in Exec

    QTest::newRow("program found on PATH") << u"glowdeck"_qs << QStringList() << QString();
    QTest::newRow("with arguments") << u"glowdeck --settings /x/s.json"_qs << QStringList()
                                    << u" --settings /x/s.json"_qs;
    QTest::newRow("quoted program") << u"\"/old place/gl\\\\\"deck\" --demo"_qs << QStringList()
                                    << u" --demo"_qs;
    QTest::newRow("its own settings file")
        << u"glowdeck"_qs << QStringList{"--settings", "/home/me/my $settings.json"}
        << u" --settings \"/home/me/my \\\\$settings.json\""_qs;
}

void TestXdgAutostartEntry::anInstalledProgramCopiesItsPackagedEntry()
{
    QFETCH(QString, packagedExec);
    QFETCH(QStringList, own);
    QFETCH(QString, arguments);
    const QString prefix = m_folder->filePath(QStringLiteral("prefix"));
    const QString packaged =
        QStringLiteral(
            "[Desktop Entry]\nType=Application\nName=Glowdeck\nTryExec=glowdeck\nExec=%1\n"
            "Icon=com.brambleworks.Glowdeck\nX-GNOME-Autostart-enabled=false\nDBusActivatable=true\n"
            "[Desktop Action settings]\nName=Settings\nExec=glowdeck\n")
            .arg(packagedExec);
    QVERIFY(writeFile(prefix + QStringLiteral("/share/applications/com.brambleworks.Glowdeck.desktop"),
                      packaged));
    const QString program = prefix + QStringLiteral("/bin/glowdeck");
    XdgAutostartEntry item = entry(program, {}, own);

    QVERIFY(item.setEnabled(true));

    // The packaged entry, without what would keep it from starting or start it without its arguments (D-Bus
    // activation), starting the program that wrote it
    // (an unpacked package or a private prefix is not on PATH), and skipped once that program is gone;
    // other groups stay as they are.
    QCOMPARE(readFile(item.entryPath()),
             QStringLiteral("[Desktop Entry]\nType=Application\nName=Glowdeck\nExec=%1%2\nTryExec=%3\n"
                            "Icon=com.brambleworks.Glowdeck\n[Desktop Action settings]\nName=Settings\n"
                            "Exec=glowdeck\n")
                 .arg(XdgAutostartEntry::execValue(program), arguments, program));
    QVERIFY(item.isEnabled());
}

void TestXdgAutostartEntry::switchingOffMasksASystemEntry()
{
    const QString system = m_folder->filePath(QStringLiteral("etc-xdg"));
    QVERIFY(writeFile(system + QStringLiteral("/autostart/com.brambleworks.Glowdeck.desktop"),
                      QStringLiteral("[Desktop Entry]\nType=Application\nName=Glowdeck\nExec=glowdeck\n")));
    XdgAutostartEntry item = entry(QStringLiteral("/usr/bin/glowdeck"), {system});
    QVERIFY(item.isEnabled());

    QVERIFY(item.setEnabled(false));

    // Removing ours would leave the system's in force: ours now hides it.
    QVERIFY(!item.isEnabled());
    QVERIFY(readFile(item.entryPath()).contains(QStringLiteral("\nHidden=true\n")));
    QVERIFY(item.setEnabled(true));
    QVERIFY(item.isEnabled());
}

void TestXdgAutostartEntry::execValueQuotesWhatTheShellWouldSplit_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("exec");

    const auto row = [](const char* name, const char* program, const char* exec) {
        QTest::newRow(name) << QString(program) << QString(exec);
    };
    row("plain", "/usr/bin/glowdeck", "/usr/bin/glowdeck");
    row("blank", "/home/a b/glowdeck", "\"/home/a b/glowdeck\"");
    row("dollar and quote", "/x/$HOME\"q", "\"/x/\\\\$HOME\\\\\"q\"");
    row("backslash", "/x/a\\b", "\"/x/a\\\\\\\\b\"");
    row("percent is not a field code", "/x/100%/glowdeck", "/x/100%%/glowdeck");
    row("line break cannot be written", "/x/a\nb", "");
}

void TestXdgAutostartEntry::execValueQuotesWhatTheShellWouldSplit()
{
    QFETCH(QString, program);
    QFETCH(QString, exec);
    QCOMPARE(XdgAutostartEntry::execValue(program), exec);
}

QTEST_GUILESS_MAIN(TestXdgAutostartEntry)
#include "tst_xdgautostartentry.moc"
