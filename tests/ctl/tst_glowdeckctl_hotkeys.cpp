#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/// `glowdeckctl hotkeys`, the real executable on a settings file of its own.
class TestGlowdeckCtlHotkeys final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void listsTheKeysAndActionsAsThePaneShowsThem();
    void listsThemAsJsonForScripts();

private:
    /// Runs glowdeckctl with `arguments`; its standard output, or a null string when it failed.
    QString run(const QStringList& arguments) const;
    QString settingsFile() const { return m_dir.filePath(QStringLiteral("settings.json")); }

    QTemporaryDir m_dir;
};

void TestGlowdeckCtlHotkeys::init()
{
    const QJsonObject settings{
        {"GlobalHotkeys_allLightsOff", R"({"carbonKeyCode":40,"carbonModifiers":6144})"},
        {"GlobalHotkeys_allLightsOn", false},
        {"GlobalHotkeys_allLightsRed", "ctrl+r"},
        {"GlobalHotkeys_actionCustomGroup1", R"({"carbonKeyCode":122,"carbonModifiers":256})"},
        {"keyIncrement", 25},
        // Custom shortcut 1 reads slot 0, shortcut 2 slot 1.
        {"hotkeyCustomGroupAction0", "3_brighter"},
        {"hotkeyCustomGroupAction1", "3_dim"},
        {"hotkeyCustomGroupAction2", "001788fffe9c4d5e/1_off"},
        {"hotkeyCustomGroupAction3", "001788FFFE000000/2_on"},
        // Two bridges: each room action names the one it acts on; the older form acts on the first.
        {"bridges", QJsonArray{QJsonObject{{"id", "001788FFFE6A3B2C"}, {"name", "Philips hue"}},
                               QJsonObject{{"id", "001788FFFE9C4D5E"}, {"name", "Upstairs"}}}},
    };
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QVERIFY(file.write(QJsonDocument(settings).toJson()) > 0);
}

QString TestGlowdeckCtlHotkeys::run(const QStringList& arguments) const
{
    QProcess process;
    process.start(QStringLiteral(GLOWDECKCTL_PATH), arguments);
    if (!process.waitForFinished(10000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        return {};
    return QString::fromUtf8(process.readAllStandardOutput());
}

void TestGlowdeckCtlHotkeys::listsTheKeysAndActionsAsThePaneShowsThem()
{
    const QStringList lines = run({QStringLiteral("hotkeys"), QStringLiteral("--settings"), settingsFile()})
                                  .split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 14);
    const auto simplified = [&](int i) { return lines.at(i).simplified(); };
    QCOMPARE(simplified(0), QStringLiteral("NAME KEYS ACTION"));
    QCOMPARE(simplified(1), QStringLiteral("allLightsOn - every room on"));
    QCOMPARE(simplified(2), QStringLiteral("allLightsOff Ctrl+Alt+K every room off"));
    QCOMPARE(simplified(3), QStringLiteral("allLightsBrighter - every room brighter by 25"));
    QCOMPARE(simplified(5), QStringLiteral("allLightsRed (unreadable) every room red"));
    QCOMPARE(simplified(8), QStringLiteral("actionCustomGroup1 Meta+F1 room 3 brighter (Philips hue)"));
    QCOMPARE(simplified(9), QStringLiteral(R"(actionCustomGroup2 - nothing ("3_dim" is no room action))"));
    QCOMPARE(simplified(10), QStringLiteral("actionCustomGroup3 - room 1 off (Upstairs)"));
    QCOMPARE(simplified(11),
             QStringLiteral("actionCustomGroup4 - room 2 on (bridge 001788FFFE000000, not stored)"));
    QCOMPARE(simplified(12), QStringLiteral("actionCustomGroup5 - nothing"));
    QCOMPARE(simplified(13), QStringLiteral("openGlowdeck - open or close the Glowdeck window"));
}

void TestGlowdeckCtlHotkeys::listsThemAsJsonForScripts()
{
    const QJsonArray list = QJsonDocument::fromJson(run({QStringLiteral("hotkeys"), QStringLiteral("--json"),
                                                         QStringLiteral("--settings"), settingsFile()})
                                                        .toUtf8())
                                .array();
    QCOMPARE(list.size(), 13);
    const QJsonObject off = list.at(1).toObject();
    QCOMPARE(off.value("name").toString(), QStringLiteral("allLightsOff"));
    QCOMPARE(off.value("keys").toString(), QStringLiteral("Ctrl+Alt+K"));
    QCOMPARE(off.value("shortcut").toObject(),
             (QJsonObject{{"carbonKeyCode", 40}, {"carbonModifiers", 6144}}));
    QVERIFY(list.at(0).toObject().value("shortcut").isNull());
    QCOMPARE(list.at(7).toObject().value("choice").toString(), QStringLiteral("3_brighter"));
    QVERIFY(!list.at(6).toObject().contains("choice"));

    // Without a settings file nothing is assigned, and no file is made.
    const QString missing = m_dir.filePath(QStringLiteral("none.json"));
    const QString output = run({QStringLiteral("hotkeys"), QStringLiteral("--settings"), missing});
    QCOMPARE(output.count(QStringLiteral(" - ")), 13);
    QVERIFY(!QFile::exists(missing));
}

QTEST_GUILESS_MAIN(TestGlowdeckCtlHotkeys)
#include "tst_glowdeckctl_hotkeys.moc"
