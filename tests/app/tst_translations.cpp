#include "../preferences/PaneBench.h"
#include "i18n/Translations.h"
#include "panels/BodyView.h"
#include "preferences/panes/ConfigurationPart.h"

#include <QApplication>
#include <QLabel>
#include <QLocale>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QTranslator>

class TestTranslations final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void theSystemLocaleChoosesTheLanguageAndTheTimes();
    void thePanesSpeakTheLanguageWithItsPluralForms_data();
    void thePanesSpeakTheLanguageWithItsPluralForms();
    void theProgramsHelpSpeaksTheSystemLanguage_data();
    void theProgramsHelpSpeaksTheSystemLanguage();
};

void TestTranslations::cleanup()
{
    // A translator takes itself out of the application as it goes.
    qDeleteAll(qApp->findChildren<QTranslator*>(Qt::FindDirectChildrenOnly));
    QLocale::setDefault(QLocale::system());
}

void TestTranslations::theSystemLocaleChoosesTheLanguageAndTheTimes()
{
    // main() set LC_ALL, as a German session does.
    QCOMPARE(QLocale::system().language(), QLocale::German);
    QVERIFY(Translations::install(QLocale::system()));

    const QString time = QLocale().toString(QTime(23, 40), QLocale::ShortFormat);
    QCOMPARE(QCoreApplication::translate("DesktopNotifications", "Lights off at %1").arg(time),
             u"Licht aus um 23:40"_qs);
    const char* inMinutes = "All lights switch off in %n minute(s).";
    QCOMPARE(QCoreApplication::translate("DesktopNotifications", inMinutes, nullptr, 30),
             u"Alle Lampen gehen in 30 Minuten aus."_qs);
    QCOMPARE(QCoreApplication::translate("DesktopNotifications", inMinutes, nullptr, 1),
             u"Alle Lampen gehen in 1 Minute aus."_qs);
}

void TestTranslations::thePanesSpeakTheLanguageWithItsPluralForms_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<bool>("spoken");
    QTest::addColumn<QString>("detect");
    QTest::addColumn<QString>("foundOne");
    QTest::addColumn<QString>("foundSeveral");
    QTest::addColumn<QString>("settingsLink"); // the word of the empty list's hint that opens the settings

    QTest::newRow("German") << "de_DE" << true << "Suchen und koppeln"
                            << "1 Bridge gefunden."
                            << "3 Bridges gefunden."
                            << ">Einstellungen</a>";
    QTest::newRow("English") << "en_GB" << true << "Detect and pair"
                             << "1 bridge found."
                             << "3 bridges found."
                             << ">settings</a>";
    // A language without a translation reads English, with English plural forms, not the source's.
    QTest::newRow("not spoken") << "fi_FI" << false << "Detect and pair"
                                << "1 bridge found."
                                << "3 bridges found."
                                << ">settings</a>";
}

void TestTranslations::thePanesSpeakTheLanguageWithItsPluralForms()
{
    QFETCH(QString, locale);
    QFETCH(bool, spoken);
    QFETCH(QString, detect);
    QFETCH(QString, foundOne);
    QFETCH(QString, foundSeveral);
    QFETCH(QString, settingsLink);
    QCOMPARE(Translations::install(QLocale(locale)), spoken);
    PaneBench bench;

    ConfigurationPart part(bench.settings());
    QCOMPARE(part.findChild<QPushButton*>(QStringLiteral("detectButton"))->text(), detect);
    auto* found = part.findChild<QLabel*>(QStringLiteral("foundAddress"));
    part.showFoundCount(1);
    QCOMPARE(found->text(), foundOne);
    part.showFoundCount(3);
    QCOMPARE(found->text(), foundSeveral);

    BodyView body(bench.settings().preferences(), bench.sessions());
    auto* hint = body.findChild<QLabel*>(QStringLiteral("NoLights"));
    QVERIFY(hint);
    QTRY_VERIFY2(hint->text().contains(settingsLink), qPrintable(hint->text()));
}

void TestTranslations::theProgramsHelpSpeaksTheSystemLanguage_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<bool>("onStandardError");
    QTest::addColumn<QString>("expected");
    QTest::newRow("glowdeck --help") << QStringLiteral(GLOWDECK_PROGRAM) << QStringList{u"--help"_qs} << 0
                                     << false << u"Die Einstellungen in <Datei> lesen und schreiben."_qs;
    // The help of glowdeckctl fits a terminal of 80 columns in German too, whose words are longer.
    QTest::newRow("glowdeckctl --help")
        << QStringLiteral(GLOWDECKCTL_PROGRAM) << QStringList{u"--help"_qs} << 0 << false
        << u"Alle Lampen ausschalten, mit einer Anfrage je Bridge"_qs;
    QTest::newRow("glowdeckctl usage error")
        << QStringLiteral(GLOWDECKCTL_PROGRAM) << QStringList{u"light"_qs} << 2 << true
        << u"glowdeckctl: \u201elight\u201c braucht die ID einer Lampe.\nHilfe gibt \u201eglowdeckctl --help\u201c.\n"_qs;
    // The simulator's help; its answers to clients stay the bridge's, in English.
    QTest::newRow("glowdeck-simulator --help")
        << QStringLiteral(GLOWDECK_SIMULATOR_PROGRAM) << QStringList{u"--help"_qs} << 0 << false
        << u"Jede empfangene Anfrage ausgeben."_qs;
}

void TestTranslations::theProgramsHelpSpeaksTheSystemLanguage()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(bool, onStandardError);
    QFETCH(QString, expected);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("de_DE.UTF-8"));
    environment.remove(QStringLiteral("LANGUAGE"));
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    QVERIFY(process.waitForFinished(30000));
    const QString text =
        QString::fromUtf8(onStandardError ? process.readAllStandardError() : process.readAllStandardOutput());
    QCOMPARE(process.exitCode(), exitCode);
    QVERIFY2(text.contains(expected), qPrintable(text));
    if (program == QStringLiteral(GLOWDECKCTL_PROGRAM)) {
        for (const QString& line : text.split(u'\n'))
            QVERIFY2(line.size() <= 80, qPrintable(line));
    }
}

int main(int argc, char** argv)
{
    // A German session; LANGUAGE would come before it in the choice of language.
    qputenv("LC_ALL", "de_DE.UTF-8");
    qunsetenv("LANGUAGE");
    QApplication application(argc, argv);
    TestTranslations test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_translations.moc"
